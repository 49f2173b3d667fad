#ifndef TARNWICK_TARNWICK_H
#define TARNWICK_TARNWICK_H

#include <stdint.h>
#include <wchar.h>

#if defined(_WIN32) && !defined(TARNWICK_BUILD)
#define TARNWICK_API __declspec(dllimport)
#else
#define TARNWICK_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef void (*TarnwickFocusCallback)(const char* fileName, uint32_t processId, const char* fullPath);

TARNWICK_API int IA_RunMultiPlatformGameScanJson(const char* path, char* buffer, int size);
TARNWICK_API void RunMultiPlatformGameScan(void);
TARNWICK_API int IA_GetGameDetailsByPathJson(const char* path, char* buffer, int size);
TARNWICK_API int32_t IA_RefreshCache(void);
TARNWICK_API int32_t IA_GetAppsJson(int32_t page, int32_t pageSize, const wchar_t* filter, char* out, int32_t outSize);
TARNWICK_API int32_t IA_GetAppsJsonAll(const wchar_t* filter, char* out, int32_t outSize);
TARNWICK_API int32_t IA_FindGamesJson(const char* queryJson, char* out, int32_t outSize);
TARNWICK_API int32_t IA_FindGamesByFile(const char* filePath, char* out, int32_t outSize);
TARNWICK_API void SetFocusCallbackEx(TarnwickFocusCallback callback);
TARNWICK_API void StartFocusWatch(int32_t intervalMs);
TARNWICK_API void StopFocusWatch(void);

#ifdef __cplusplus
}
#endif

#endif
