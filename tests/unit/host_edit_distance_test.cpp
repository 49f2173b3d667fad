// How far two texts are from each other.
#include "host/edit_distance.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using host::EditDistance;

TEST(HostEditDistance, CountsEachKindOfEdit) {
  EXPECT_EQ(EditDistance("scan", "scan"), 0u);
  EXPECT_EQ(EditDistance("scan", "scna"), 1u);
  EXPECT_EQ(EditDistance("scan", "scans"), 1u);
  EXPECT_EQ(EditDistance("scan", "can"), 1u);
  EXPECT_EQ(EditDistance("scan", "span"), 1u);
  EXPECT_EQ(EditDistance("", "scan"), 4u);
}

TEST(HostEditDistance, CountsCharactersWhateverTheirBytes) {
  EXPECT_EQ(EditDistance(U"Вьюга", U"Выюга"), 1u);
}

}  // namespace
}  // namespace tarnwick
