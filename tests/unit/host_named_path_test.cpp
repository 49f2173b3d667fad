// Paths that name one place.
#include "host/explain/named_path.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using host::ComparablePath;
using host::FullForm;
using host::IsAtOrBelow;

TEST(HostNamedPath, CaseSlashesAndQuotesDoNotCount) {
  for (const char* path :
       {"C:\\Games\\\u00C9toile", "c:/games/\u00E9toile/", "\"C:\\\\GAMES\\\u00C9TOILE\\\""}) {
    EXPECT_EQ(ComparablePath(path), "c:\\games\\\u00E9toile") << path;
  }
  EXPECT_EQ(ComparablePath(std::string("C:\\a\0\0", 6)), "c:\\a");
  EXPECT_EQ(ComparablePath(""), "");
}

TEST(HostNamedPath, APlaceHoldsItselfAndWhatIsBelow) {
  EXPECT_TRUE(IsAtOrBelow("c:\\a", "c:\\a"));
  EXPECT_TRUE(IsAtOrBelow("c:\\a\\b.exe", "c:\\a"));
  EXPECT_TRUE(IsAtOrBelow("c:\\a", "c:"));
  EXPECT_FALSE(IsAtOrBelow("c:\\ab", "c:\\a"));
  EXPECT_FALSE(IsAtOrBelow("c:", "c:\\a"));
  EXPECT_FALSE(IsAtOrBelow("c:\\a", ""));
}

TEST(HostNamedPath, AFullFormHasNoDotsAndBackslashesOnly) {
  EXPECT_EQ(FullForm("C:/Games/./X/../Y/y.exe"), "C:\\Games\\Y\\y.exe");
  EXPECT_TRUE(FullForm("x.exe").ends_with("\\x.exe"));
  EXPECT_GT(FullForm("x.exe").size(), 7u);
}

}  // namespace
}  // namespace tarnwick
