// Edge: the scan service's exports, thin shells over functions that can be tested alone.
#include "core/console_report.h"
#include "core/game_details.h"
#include "core/scan_driver.h"
#include "tarnwick/tarnwick.h"

extern "C" {

int IA_RunMultiPlatformGameScanJson(const char* path, char* buffer, int size) {
  return tarnwick::RunScanGuarded(path, buffer, size);
}

void RunMultiPlatformGameScan(void) { tarnwick::RunConsoleReport(); }

int IA_GetGameDetailsByPathJson(const char* path, char* buffer, int size) {
  return tarnwick::WriteGameDetails(path, buffer, size);
}

}  // extern "C"
