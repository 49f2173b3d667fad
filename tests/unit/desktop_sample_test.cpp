// The sample desktop of the demo stands and goes.
#include "common/wide_text.h"
#include "desktop/description.h"
#include "desktop/journal.h"
#include "desktop/windows_calls.h"
#include "foundation/windows_api.h"
#include "support/file_bytes.h"
#include "support/source_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace tarnwick::desktop {
namespace {

std::string SampleText() {
  return tests::ReadBytes(tests::SourceFolder() + "/desktop/samples/sample-desktop.json");
}

bool Exists(const std::string& path) {
  return GetFileAttributesW(LongPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

TEST(DesktopSample, StandsAndGoes) {
  Desktop desktop;
  ASSERT_NO_THROW(ApplyDescription(desktop, SampleText()));
  const std::vector<MadeThing> made = desktop.Made();
  EXPECT_GT(made.size(), 200u);
  EXPECT_TRUE(Exists(R"(C:\TarnwickDemo\MasterGameList.xml)"));
  for (const MadeThing& thing : made) {
    if (thing.kind == MadeThing::Kind::kFile) {
      EXPECT_TRUE(Exists(thing.place)) << thing.place;
    }
  }
  ASSERT_NO_THROW(desktop.Remove());
  for (const MadeThing& thing : made) {
    if (thing.kind == MadeThing::Kind::kFile && !thing.before) {
      EXPECT_FALSE(Exists(thing.place)) << thing.place;
    }
    if (thing.kind == MadeThing::Kind::kFolder) {
      EXPECT_FALSE(Exists(thing.place)) << thing.place;
    }
  }
}

TEST(DesktopSample, GivesEveryExecutableAColourOfItsOwn) {
  const std::string sample = SampleText();
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
