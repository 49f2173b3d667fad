// The main of every Windows test program. Tests that change the registry or drive C: do so through a Desktop,
// which throws unless TARNWICK_THROWAWAY_MACHINE says that the machine may be spoilt.
#include "foundation/windows_api.h"

#include <gmock/gmock.h>

#include <cstdio>

int main(int argc, char** argv) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  testing::InitGoogleMock(&argc, argv);
  const int result = RUN_ALL_TESTS();
  // CTest wants this mark: a program that ends half-way can end with exit code 0.
  std::puts("TARNWICK-TESTS-ENDED");
  return result;
}
