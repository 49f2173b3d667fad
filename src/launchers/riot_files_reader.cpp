// Reader: the Riot client's files. The helper follows the loose rule, JsonFindNextQuoted, as miHoYo's values
// do; the YAML is searched for one line.
#include "launchers/riot_files_reader.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "launchers/json_text_reader.h"

namespace tarnwick {

std::string ReadRiotLaunchHelper(std::istream& json) { return JsonFindNextQuoted(ReadAll(json), "rc_live"); }

std::string ReadYamlInstallPath(std::istream& yaml, const std::string& path) {
  std::string folder;
  LogExceptions("[RiotPlatformSearch] Error reading YAML file (" + path + "): ", [&] {
    for (std::string line; std::getline(yaml, line);) {
      if (line.find("product_install_full_path:") == std::string::npos) continue;
      // Kept: the colon is the line's first, not the key's own (docs/decisions/launcher-texts.md).
      folder = TrimCharacters(line.substr(line.find(':') + 1), " \t\"");
      break;
    }
  });
  return folder;
}

}  // namespace tarnwick
