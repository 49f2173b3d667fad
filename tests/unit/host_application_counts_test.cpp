#include "host/application_counts.h"

#include <gtest/gtest.h>

namespace tarnwick::host {
namespace {

TEST(HostApplicationCounts, FindsTheNumberOfItemsWithFewQuestions) {
  for (const uint64_t total : {0u, 1u, 2u, 3u, 20u, 21u, 41u, 64u, 1000u, 4097u}) {
    for (const uint64_t known : {uint64_t{0}, total / 2, total}) {
      int questions = 0;
      EXPECT_EQ(CountItems(known,
                           [&](uint64_t number) {
                             ++questions;
                             return number <= total;
                           }),
                total);
      EXPECT_LE(questions, 26) << total << " items, " << known << " known";
    }
  }
}

TEST(HostApplicationCounts, APageTellsOfTheOthers) {
  EXPECT_EQ(CountsText({20, 41, 1, 20, {}}), "20 of 41 applications (page 1 of 3; --all shows all).\n");
  EXPECT_EQ(CountsText({1, 41, 3, 20, {}}), "1 of 41 applications (page 3 of 3; --all shows all).\n");
  EXPECT_EQ(CountsText({20, 40, 2, 20, {}}), "20 of 40 applications (page 2 of 2; --all shows all).\n");
}

TEST(HostApplicationCounts, OneIsSingular) {
  EXPECT_EQ(CountsText({1, 1, 1, 20, {}}), "1 application.\n");
  EXPECT_EQ(CountsText({2, 2, 1, 20, {3}}), "2 applications.\n1 more has no executable and is not shown.\n");
}

TEST(HostApplicationCounts, TellsOfThoseWithoutAnExecutableWhereThatIsKnown) {
  EXPECT_EQ(CountsText({2, 2, 1, 0, {9}}), "2 applications.\n7 more have no executable and are not shown.\n");
  EXPECT_EQ(CountsText({2, 2, 1, 0, {2}}), "2 applications.\n");
  EXPECT_EQ(CountsText({0, 0, 1, 20, {9}}), "9 have no executable and are not shown.\n");
  EXPECT_EQ(CountsText({0, 0, 1, 20, {}}), "");
}

TEST(HostApplicationCounts, APageBehindTheEndIsNamedWithThePagesThereAre) {
  EXPECT_EQ(MissingPageText({0, 41, 9, 20, {}}), "there is no page 9: 41 applications make 3 pages of 20");
  EXPECT_EQ(MissingPageText({0, 1, 2, 20, {}}), "there is no page 2: 1 application makes 1 page of 20");
  EXPECT_EQ(MissingPageText({0, 0, 2, 20, {}}), "there is no page 2: 0 applications found");
  EXPECT_EQ(MissingPageText({0, 0, 1, 20, {}}), "");
  EXPECT_EQ(MissingPageText({1, 41, 3, 20, {}}), "");
}

}  // namespace
}  // namespace tarnwick::host
