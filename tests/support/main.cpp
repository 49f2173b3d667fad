// The main of every Windows test program.
#include "foundation/windows_api.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  // These tests write the registry and drive C: where launchers look, so they only run on a machine that says
  // it may be spoilt.
  const char* throwaway = std::getenv("TARNWICK_THROWAWAY_MACHINE");
  if (throwaway == nullptr || std::string(throwaway) != "1") {
    std::fputs(
        "These tests change the registry and drive C:. Set TARNWICK_THROWAWAY_MACHINE=1 on a machine that "
        "may be spoilt.\n",
        stderr);
    return 2;
  }
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  testing::InitGoogleMock(&argc, argv);
  const int result = RUN_ALL_TESTS();
  // The runner insists on this mark: a program that ends half-way can end with exit code 0.
  std::puts("TARNWICK-TESTS-ENDED");
  return result;
}
