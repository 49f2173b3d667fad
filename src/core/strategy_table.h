#pragma once
// The table of scan strategies: data, in the order in which a level's strategies are started.

#include "matching/scan_result.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {

struct ScanStrategy {
  std::string name;
  int32_t priority = 0;  // 6 runs first, 0 last
  ScanFunction* scanFunction = nullptr;
  bool flag = false;  // false in every row; copied with the row and read by nothing
};

std::vector<ScanStrategy> ScanStrategies();

}  // namespace tarnwick
