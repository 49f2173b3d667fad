// Edge: the library's entry point. It touches no threads, COM, registry or other libraries: the loader lock
// is held.
#include "foundation/log.h"
#include "foundation/windows_api.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) tarnwick::LogLine("DLL_PROCESS_ATTACH: Tarnwick.dll loaded.");
  if (reason == DLL_PROCESS_DETACH) tarnwick::LogLine("DLL_PROCESS_DETACH: Tarnwick.dll unloaded.");
  return TRUE;
}
