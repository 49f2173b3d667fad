#pragma once
// Games and applications as tables for people.

#include "host/presentation.h"

#include <string>
#include <vector>

namespace tarnwick::host {

std::string GamesTable(const std::vector<Game>& games, const ScanReport& report);
std::string ApplicationsTable(const std::vector<Application>& applications);

}  // namespace tarnwick::host
