#pragma once
// How much room a game takes, where that is written down.

#include "host/list_formats.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick::host {

// Where Steam writes down what it installed for a game of this path and launch URI; empty for other games.
std::string SteamManifestPath(const std::string& loc, const std::string& launchUrl);

// Steam's "SizeOnDisk" in KB, rounded up; nothing where the manifest doesn't tell one.
std::optional<uint64_t> SteamSizeKb(const std::string& manifest);

// Adds "sizeKB" at the end of each game of a scan: a number, or null where nothing tells. Folders are never
// measured: that takes minutes.
void AddSizes(Rows& games);

}  // namespace tarnwick::host
