#include "support/library.h"

#include "foundation/windows_api.h"

#include <stdexcept>

namespace tarnwick::tests {

std::wstring LibraryPath(const char* fileName) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring path = program;
  const std::string name = fileName;
  return path.substr(0, path.find_last_of(L"\\/") + 1) + std::wstring(name.begin(), name.end());
}

template <class Function>
Function Library::Find(const char* name) const {
  const FARPROC found = GetProcAddress(static_cast<HMODULE>(module_), name);
  if (found == nullptr) throw std::runtime_error(std::string("the library doesn't export ") + name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

#define TARNWICK_FIND(name) name(Find<decltype(name)>(#name))

Library::Library(const char* fileName)
    : module_(LoadLibraryW(LibraryPath(fileName).c_str())),
      TARNWICK_FIND(IA_RunMultiPlatformGameScanJson),
      TARNWICK_FIND(RunMultiPlatformGameScan),
      TARNWICK_FIND(IA_GetGameDetailsByPathJson),
      TARNWICK_FIND(IA_RefreshCache),
      TARNWICK_FIND(IA_GetAppsJson),
      TARNWICK_FIND(IA_GetAppsJsonAll),
      TARNWICK_FIND(IA_FindGamesJson),
      TARNWICK_FIND(IA_FindGamesByFile),
      TARNWICK_FIND(SetFocusCallbackEx),
      TARNWICK_FIND(StartFocusWatch),
      TARNWICK_FIND(StopFocusWatch) {}

#undef TARNWICK_FIND

Library::~Library() { FreeLibrary(static_cast<HMODULE>(module_)); }

}  // namespace tarnwick::tests
