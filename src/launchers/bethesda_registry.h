#pragma once
// Titles of the Bethesda.net launcher, from the Uninstall key and the catalogue.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults BethesdaRegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
