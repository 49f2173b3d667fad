#pragma once
// Games whose default folder lies in a user's profile, tried for every profile.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick {

// Tests signatures with a DefaultExe and a default folder that names the profile. The first profile with the
// game wins. `userSid` is not read. Throws std::filesystem::filesystem_error if the profiles can't be listed.
ScanResults ScanUserFolderExe(const GameList& games, const std::string& userSid);

// The profile folders of this machine, in the order of the file system, without Public, Default and Default
// User.
std::vector<std::string> ListUserFolders();

}  // namespace tarnwick
