// The sample desktop of the demo stands and goes.
#include "desktop/description.h"
#include "desktop/journal.h"
#include "support/file_bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace tarnwick::desktop {
namespace {

using tests::PathExists;

TEST(DesktopSample, StandsAndGoes) {
  Desktop desktop;
  ASSERT_NO_THROW(ApplyDescription(desktop, tests::ReadSource("desktop/samples/sample-desktop.json")));
  const std::vector<MadeThing> made = desktop.Made();
  EXPECT_GT(made.size(), 200u);
  EXPECT_TRUE(PathExists(R"(C:\TarnwickDemo\MasterGameList.xml)"));
  for (const MadeThing& thing : made) {
    if (thing.kind == MadeThing::Kind::kFile) {
      EXPECT_TRUE(PathExists(thing.place)) << thing.place;
    }
  }
  ASSERT_NO_THROW(desktop.Remove());
  for (const MadeThing& thing : made) {
    if (thing.kind == MadeThing::Kind::kFile && !thing.before) {
      EXPECT_FALSE(PathExists(thing.place)) << thing.place;
    }
    if (thing.kind == MadeThing::Kind::kFolder) {
      EXPECT_FALSE(PathExists(thing.place)) << thing.place;
    }
  }
}

TEST(DesktopSample, GivesEveryExecutableAColourOfItsOwn) {
  const std::string sample = tests::ReadSource("desktop/samples/sample-desktop.json");
  const std::string mark = "\"icon\": \"#";
  std::set<std::string> colours;
  for (size_t place = sample.find(mark); place != std::string::npos; place = sample.find(mark, place + 1)) {
    const std::string colour = sample.substr(place + mark.size(), 6);
    EXPECT_TRUE(colours.insert(colour).second) << colour;
  }
  EXPECT_GT(colours.size(), 40u);
}

}  // namespace
}  // namespace tarnwick::desktop
