#pragma once
// Tarnwick.dll as a host gets it: loaded at run time, its exports by name.

#include "tarnwick/tarnwick.h"

#include <string>

namespace tarnwick::tests {

// The built library's path: it stands next to the test program.
std::wstring LibraryPath(const char* fileName);

// Loads the library and finds all eleven exports, or throws std::runtime_error with the name of the missing
// one. Unloads it at the end of the scope; several may be alive and share the loaded library.
class Library {
 public:
  explicit Library(const char* fileName);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

 private:
  void* module_;

  template <class Function>
  Function Find(const char* name) const;

 public:
  decltype(&::IA_RunMultiPlatformGameScanJson) IA_RunMultiPlatformGameScanJson;
  decltype(&::RunMultiPlatformGameScan) RunMultiPlatformGameScan;
  decltype(&::IA_GetGameDetailsByPathJson) IA_GetGameDetailsByPathJson;
  decltype(&::IA_RefreshCache) IA_RefreshCache;
  decltype(&::IA_GetAppsJson) IA_GetAppsJson;
  decltype(&::IA_GetAppsJsonAll) IA_GetAppsJsonAll;
  decltype(&::IA_FindGamesJson) IA_FindGamesJson;
  decltype(&::IA_FindGamesByFile) IA_FindGamesByFile;
  decltype(&::SetFocusCallbackEx) SetFocusCallbackEx;
  decltype(&::StartFocusWatch) StartFocusWatch;
  decltype(&::StopFocusWatch) StopFocusWatch;
};

}  // namespace tarnwick::tests
