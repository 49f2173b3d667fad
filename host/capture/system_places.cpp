#include "host/capture/system_places.h"

#include "common/capture_rules.h"
#include "common/wide_text.h"

namespace tarnwick::host {

bool IsSystemKey(const KeyPlace& place) {
  const std::string key = common::TidyKey(place.hive + "\\" + common::Narrow(place.subkey));
  return !common::KeyFault(key, true).empty();
}

bool IsSystemPath(const std::wstring& path) { return !common::SystemPathFault(common::Narrow(path)).empty(); }

}  // namespace tarnwick::host
