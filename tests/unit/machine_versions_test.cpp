#include "foundation/machine/versions.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

const std::string kExe = R"(C:\TarnwickTest\Versions\a.exe)";

TEST(Versions, BothFormsReadTheSameTexts) {
  desktop::Desktop d;
  desktop::ExecutableOptions options;
  options.versions = {{0x409, 1200, {{"FileDescription", "Wren"}, {"ProductName", "Wren II"}}}};
  d.Executable(kExe, options);
  const VersionBlock wide = ReadVersionBlock(Utf8ToWide(kExe));
  ASSERT_THAT(VersionTranslations(wide), SizeIs(1));
  const VersionTranslation translation = VersionTranslations(wide).front();
  EXPECT_EQ(VersionText(wide, translation, L"FileDescription"), L"Wren");
  EXPECT_EQ(VersionText(wide, translation, L"NoSuchText"), std::nullopt);
  const VersionBlock narrow = ReadNarrowVersionBlock(kExe);
  const auto first = FirstNarrowTranslation(narrow);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->language, translation.language);
  EXPECT_EQ(NarrowVersionText(narrow, *first, "ProductName"), "Wren II");
  EXPECT_EQ(NarrowVersionText(narrow, *first, "NoSuchText"), std::nullopt);
}

TEST(Versions, AFileWithoutAResourceHasNone) {
  desktop::Desktop d;
  d.File(kExe, "no program");
  EXPECT_THAT(ReadVersionBlock(Utf8ToWide(kExe)), IsEmpty());
  EXPECT_THAT(ReadNarrowVersionBlock(kExe), IsEmpty());
  EXPECT_THAT(ReadNarrowVersionBlock(""), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
