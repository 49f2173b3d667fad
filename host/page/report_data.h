#pragma once
// What the page tells beside its games, as its script reads it: the report of a scan by strategy, and the
// explanation of each game. Lists that grow with the machine are cut here, and what is left out is counted.

#include "host/explain/scan_findings.h"

#include <nlohmann/json_fwd.hpp>

namespace tarnwick::host {

inline constexpr size_t kMostReasons = 200;    // of one strategy
inline constexpr size_t kMostQuestions = 200;  // of one strategy

nlohmann::json ReportData(const ObservedScan& scan);
nlohmann::json ExplanationData(const GameFinding& finding);

}  // namespace tarnwick::host
