// Edge: placeholder exports, so that the library links while its parts are being built.
#include "tarnwick/tarnwick.h"

extern "C" {
int32_t IA_RefreshCache(void) { return 0; }
int32_t IA_GetAppsJson(int32_t, int32_t, const wchar_t*, char*, int32_t) { return 2; }
int32_t IA_GetAppsJsonAll(const wchar_t*, char*, int32_t) { return 2; }
int32_t IA_FindGamesJson(const char*, char*, int32_t) { return 2; }
int32_t IA_FindGamesByFile(const char*, char*, int32_t) { return 2; }
}
