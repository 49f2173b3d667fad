// The public header compiles in both languages: this file is C++, and the program it runs is plain C.
#include "foundation/windows_api.h"
#include "support/library.h"

#include <gtest/gtest.h>

namespace tarnwick::tests {
namespace {

DWORD ExitCodeOf(std::wstring program) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, program.data(), nullptr, nullptr, FALSE, 0, nullptr, L"C:\\windows", &startup,
                      &process)) {
    return 1000;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 1001;
  GetExitCodeProcess(process.hProcess, &code);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return code;
}

TEST(PublicHeader, AHostInPlainCCallsEveryExport) {
  EXPECT_EQ(ExitCodeOf(L"\"" + LibraryPath("tarnwick_public_header_test.exe") + L"\""), 0u);
}

TEST(PublicHeader, EveryExportIsThereForAHostThatLoadsTheLibraryAtRunTime) {
  const Library library(TARNWICK_DLL);
  EXPECT_NE(library.IA_RunMultiPlatformGameScanJson, nullptr);
  EXPECT_NE(library.StopFocusWatch, nullptr);
}

}  // namespace
}  // namespace tarnwick::tests
