#pragma once
// Games and applications as tables for people.

#include "host/presentation.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

// `width` is the terminal's, in columns, which no row may exceed; 0 gives every text whole.
std::string GamesTable(const std::vector<Game>& games, const ScanReport& report, size_t width = 0);

// Without a line of counts: that depends on what was asked.
std::string ApplicationsTable(const std::vector<Application>& applications, size_t width = 0);

}  // namespace tarnwick::host
