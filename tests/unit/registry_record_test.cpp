#include "launchers/registry_record.h"

#include "desktop/desktop.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::View;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickTest\RegistryRecord)";

TEST(RegistryRecord, AValueThatIsMissingReadsAsEmpty) {
  const RegistryValues values = {{"Name", "x"}, {"Empty", ""}};
  EXPECT_EQ(ValueOrEmpty(values, "Name"), "x");
  EXPECT_EQ(ValueOrEmpty(values, "Empty"), "");
  EXPECT_EQ(ValueOrEmpty(values, "name"), "") << "names are compared with case";
}

TEST(RegistryRecord, HasValuesWhateverTheyHold) {
  const RegistryValues values = {{"Name", "x"}, {"Empty", ""}};
  EXPECT_TRUE(HasValues(values, {}));
  EXPECT_TRUE(HasValues(values, {"Name", "Empty"}));
  EXPECT_FALSE(HasValues(values, {"Name", "Other"}));
}

TEST(RegistryRecord, SubKeysComeFromThe32BitViewOnlyWhereThe64BitViewHasNone) {
  EXPECT_THAT(SubKeysOfSomeView(kKey), IsEmpty());
  Desktop desktop;
  desktop.Key(kKey + R"(\Narrow)", View::k32);
  EXPECT_THAT(SubKeysOfSomeView(kKey), ElementsAre("Narrow"));
  desktop.Key(kKey, View::k64);
  EXPECT_THAT(SubKeysOfSomeView(kKey), ElementsAre("Narrow"));
  desktop.Key(kKey + R"(\Wide)", View::k64);
  EXPECT_THAT(SubKeysOfSomeView(kKey), ElementsAre("Wide"));
}

}  // namespace
}  // namespace tarnwick
