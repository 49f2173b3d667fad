// Edge: Games in their default folder, tried on every fixed drive.
#include "matching/default_exe_search.h"

namespace tarnwick {

ScanResults ScanDefaultExe(const GameList&, const std::string&) { return {}; }

}  // namespace tarnwick
