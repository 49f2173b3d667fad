// Reader: app manifests, line by line.
#include "steam/app_manifest_reader.h"

#include "steam/vdf_line_reader.h"

#include <optional>

namespace tarnwick {
namespace {

// False if the line doesn't hold the key. A line that holds it is used up, whether or not its value can be
// cut out.
bool TakeValue(const std::string& line, const std::string& key, std::string& value) {
  const size_t at = line.find(key);
  if (at == std::string::npos) return false;
  if (std::optional<std::string> found = QuotedValueBehind(line, at + key.size())) value = std::move(*found);
  return true;
}

void TakeLine(const std::string& line, SteamManifestInfo& manifest) {
  if (TakeValue(line, "\"appid\"", manifest.appId)) return;
  // Once the name is known the key isn't even looked for, so such a line may still give the folder.
  if (manifest.name.empty() && TakeValue(line, "\"name\"", manifest.name)) return;
  TakeValue(line, "\"installdir\"", manifest.installDir);
}

}  // namespace

SteamManifestInfo ReadAppManifest(std::istream& text) {
  SteamManifestInfo manifest;
  for (std::string line; std::getline(text, line);) TakeLine(line, manifest);
  return manifest;
}

}  // namespace tarnwick
