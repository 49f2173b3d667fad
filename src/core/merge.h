#pragma once
// One entry for each game, out of what all strategies found.

#include "matching/scan_result.h"

#include <string>

namespace tarnwick {

// How much a result's source is worth where two results have one Steam app id; the higher wins.
int SourceRank(const std::string& source);

// The results without repetitions, in the order of first appearance. Results of one Steam app id are one
// game, at the first one's place, with the fields of the one of highest rank. A result without an app id is
// dropped if an earlier entry has its path, which must be equal byte for byte and not empty. Names play no
// part.
ScanResults MergeResults(const ScanResults& all);

}  // namespace tarnwick
