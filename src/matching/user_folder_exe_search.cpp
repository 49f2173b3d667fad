// Edge: Games whose default folder lies in a user's profile, tried for every profile.
#include "matching/user_folder_exe_search.h"

namespace tarnwick {

ScanResults ScanUserFolderExe(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
