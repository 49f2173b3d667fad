/* A host without a runtime, for a linker that reads what MSVC's does: it ends with the length of the answer. */
#include <tarnwick/tarnwick.h>

__declspec(dllimport) void __stdcall ExitProcess(unsigned code);

void Start(void) {
  char answer[16];
  ExitProcess((unsigned)(40 + IA_GetGameDetailsByPathJson(0, answer, sizeof answer)));
}
