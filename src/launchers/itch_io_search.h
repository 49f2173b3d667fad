#pragma once
// Games of the itch.io app; its database is out of reach, so nothing is ever found.

#include "matching/scan_result.h"

namespace tarnwick {

struct ItchIo {
  ScanResults ItchIoSearch();
};

}  // namespace tarnwick
