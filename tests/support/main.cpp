// The main of every Windows test program. A test that would change the registry or drive C: builds a desktop,
// which refuses to on a machine that may not be spoilt.
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
