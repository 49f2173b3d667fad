#include "launchers/epic_manifest_reader.h"
#include "launchers/json_text_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const tarnwick::EpicManifestEntry item = tarnwick::ReadEpicManifest(text);
  if (!item.AppCategories.empty() || item.baseUrlSegment != item.AppName) std::abort();
  size_t covered = 0;
  for (const std::string_view object : tarnwick::JsonFindObjectArray(text, "InstallationList")) {
    const size_t at = static_cast<size_t>(object.data() - text.data());
    if (at < covered || !object.starts_with('{') || !object.ends_with('}')) std::abort();
    covered = at + object.size();
    const tarnwick::EpicManifestEntry entry = tarnwick::ReadLauncherInstalledObject(object);
    if (entry.MainGameAppName != entry.AppName) std::abort();
  }
  if (covered > size) std::abort();
  return 0;
}
