#include "steam/app_manifest_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
  const tarnwick::SteamManifestInfo manifest = tarnwick::ReadAppManifest(text);
  for (const std::string* field : {&manifest.appId, &manifest.name, &manifest.installDir}) {
    if (field->find_first_of("\"\n") != std::string::npos) std::abort();
  }
  if (!manifest.exePath.empty()) std::abort();
  return 0;
}
