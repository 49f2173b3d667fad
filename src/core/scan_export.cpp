// Edge: placeholder exports, so that the library links while its parts are being built.
#include "tarnwick/tarnwick.h"

extern "C" {
int IA_RunMultiPlatformGameScanJson(const char*, char*, int) { return 2; }
void RunMultiPlatformGameScan(void) {}
int IA_GetGameDetailsByPathJson(const char*, char*, int) { return 2; }
}
