#pragma once
// One self-contained page: a gallery with a search box, and behind it the report of the scan. It asks for
// nothing from outside; its data stand in it as JSON.

#include "host/presentation.h"

#include <string>
#include <vector>

namespace tarnwick::host {

std::string GamesPage(const std::vector<Game>& games, const ScanReport& report);
std::string ApplicationsPage(const std::vector<Application>& applications);

// The page's source in pieces, from host/page/page.html; they hold the marker that the data replace.
const std::vector<std::string>& PageTemplatePieces();

}  // namespace tarnwick::host
