// Edge: letter case is the system's.
#include "host/catalogue/name_search.h"

#include <windows.h>

#include "host/console.h"

namespace tarnwick::host {

bool HoldsName(const std::string& name, const std::string& part) {
  if (part.empty()) return true;
  const std::wstring text = Widen(name);
  const std::wstring wanted = Widen(part);
  return FindStringOrdinal(FIND_FROMSTART, text.c_str(), static_cast<int>(text.size()), wanted.c_str(),
                           static_cast<int>(wanted.size()), TRUE) >= 0;
}

}  // namespace tarnwick::host
