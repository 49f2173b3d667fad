// Edge: placeholder exports, so that the library links while its parts are being built.
#include "tarnwick/tarnwick.h"

extern "C" {
void SetFocusCallbackEx(TarnwickFocusCallback) {}
void StartFocusWatch(int32_t) {}
void StopFocusWatch(void) {}
}
