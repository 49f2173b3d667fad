#pragma once
// One self-contained page: a gallery to search, sort and filter, in which each game opens to its explanation,
// and behind it the report of the scan, by strategy. It
// asks for nothing from outside; its data stand in it as JSON.

#include "host/explain/observed_scan.h"
#include "host/options.h"
#include "host/presentation.h"

#include <string>
#include <vector>

namespace tarnwick::host {

struct PageOptions {
  int32_t iconSize = kDefaultIconSize;  // in CSS pixels, on screen, and the most that is stored
  bool icons = true;                    // without: tiles with the names' first letters
  std::string catalogue = {};           // what the report says of the scan beside its numbers; may be empty
  std::string began = {};
};

// `games` are what the answer of `scan` lists, in its order. A game that the scan doesn't know has no
// explanation.
std::string GamesPage(std::vector<Game> games, const ObservedScan& scan, const PageOptions& options = {});
std::string ApplicationsPage(const std::vector<Application>& applications, const PageOptions& options = {});

// "512 KB", "1.5 MB", "2.0 GB"; empty for a size that isn't known, 0.
std::string SizeText(uint64_t kilobytes);

// The page's source in pieces, from host/page; they hold the marker that the data replace.
const std::vector<std::string>& PageTemplatePieces();

}  // namespace tarnwick::host
