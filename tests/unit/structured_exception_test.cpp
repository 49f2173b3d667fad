#include "foundation/structured_exception.h"

#include "foundation/seh_guard.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(StructuredException, IsWhatTheNextGuardCatches) {
  EXPECT_EQ(RunGuarded([] { RaiseStructuredException(0xC00000FD); }), 0xC00000FDu);
}

}  // namespace
}  // namespace tarnwick
