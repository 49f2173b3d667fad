#pragma once
// For which of its records a strategy asked something. A question doesn't tell its record, so the strategy runs
// again with parts of its records: halves of them, down to one.

#include "host/explain/observed_scan.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tarnwick::host {

struct AskingRecord {
  std::string name;
  Heard heard;  // the last such question, which tells how it ended
};

// The first `most` records of a run that alone make the strategy ask what `asks` tells. None if it asks the
// same for records that nobody has: such a question is the strategy's own.
std::vector<AskingRecord> RecordsThatAsk(const StrategyRun& run,
                                         const std::function<bool(const Heard&)>& asks, size_t most);

}  // namespace tarnwick::host
