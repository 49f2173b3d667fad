// Edge: the scan service's exports, thin shells over functions that can be tested alone.
#include "core/scan_driver.h"
#include "foundation/result_buffer.h"
#include "tarnwick/tarnwick.h"

extern "C" {

int IA_RunMultiPlatformGameScanJson(const char* path, char* buffer, int size) {
  return tarnwick::RunScanGuarded(path, buffer, size);
}

void RunMultiPlatformGameScan(void) {}

int IA_GetGameDetailsByPathJson(const char*, char* buffer, int size) {
  return tarnwick::WriteEmptyResult("{}", buffer, size);
}

}  // extern "C"
