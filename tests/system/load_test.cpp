#include "foundation/windows_api.h"

#include <gtest/gtest.h>

TEST(Load, TheLibraryLoadsAndUnloads) {
  HMODULE library = LoadLibraryA(TARNWICK_DLL);
  ASSERT_NE(library, nullptr);
  EXPECT_TRUE(FreeLibrary(library));
}
