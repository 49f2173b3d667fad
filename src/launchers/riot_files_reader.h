#pragma once
// The Riot client's two files: RiotClientInstalls.json and a product's .yaml metadata.

#include <istream>
#include <string>

namespace tarnwick {

// The value of "rc_live", the path of the launch helper as it stands in the file; empty if there is none.
std::string ReadRiotLaunchHelper(std::istream& json);

// The install folder of a product, empty if the file names none. A standard exception gives a log line that
// names `path`, and an empty text.
std::string ReadYamlInstallPath(std::istream& yaml, const std::string& path);

}  // namespace tarnwick
