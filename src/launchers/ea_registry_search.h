#pragma once
// EA titles, by publisher keys joined to the Uninstall key.

#include "matching/scan_result.h"

namespace tarnwick {

ScanResults EARegistrySearch(const GameList& games, const std::string& userSid);

}  // namespace tarnwick
