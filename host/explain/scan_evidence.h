#pragma once
// Which of a strategy's questions tell of one game, and why its questions came to nothing.

#include "common/heard_questions.h"
#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick::host {

inline constexpr size_t kMostEvidence = 12;

// For each result the questions that are about it, in the order in which they were answered: those whose
// subject or answer holds its path, its folder, its name, its Steam app id, or the key or id that stands in
// its source, letter case apart. A text holds another as a whole: as a line, between quotes or tags, as a
// path's part or beginning. The same question with the same answer comes once. Of more than `most` those stay
// that hold the rarer of these texts, and of equals the first. The pointers lead into `heard`.
using Evidence = std::vector<const common::Heard*>;
std::vector<Evidence> EvidenceFor(const std::vector<common::Heard>& heard,
                                  const std::vector<const ScanResult*>& results, size_t most = kMostEvidence);

struct MissReason {
  std::string text;  // MissInWords
  size_t count = 0;
};

// Why questions got nothing, the most frequent reason first, equals in the order of their first appearance.
std::vector<MissReason> MissReasons(const std::vector<common::Heard>& heard);

}  // namespace tarnwick::host
