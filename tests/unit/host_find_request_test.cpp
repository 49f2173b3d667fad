#include "host/find_request.h"

#include "desktop/desktop.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

const std::string kFile = R"(C:\TarnwickTest\FindRequest\Заявка.json)";

TEST(HostFindRequest, TellsWhichEntriesTheLibraryLooksFor) {
  const FindRequest request = FindRequestFromText(
      "\xEF\xBB\xBF[{\"name\":\"Мир\",\"exeName\":\"mir.exe\"},\n {\"name\":\"B\"}, {}, "
      "{\"exeName\":\"c.exe\"}]");
  ASSERT_EQ(request.entries.size(), 4u);
  EXPECT_EQ(CountAsking(request), 2u);
  EXPECT_EQ(request.entries[0].label, "entry 1 (\"Мир\", mir.exe)");
  EXPECT_EQ(request.entries[0].text, "{\"name\":\"Мир\",\"exeName\":\"mir.exe\"}");
  EXPECT_EQ(request.entries[3].label, "entry 4 (c.exe)");
  EXPECT_THAT(IgnoredEntries(request),
              ElementsAre("entry 2 (\"B\") has no exeName, so the library ignores it",
                          "entry 3 has no exeName, so the library ignores it"));
}

TEST(HostFindRequest, EntriesEndAtTheFirstBraceAsTheyDoForTheLibrary) {
  const FindRequest request =
      FindRequestFromText(R"([{"name":{"exeName":"a.exe"},"exeName":"b.exe"},{"exeName":"c.exe)");
  ASSERT_EQ(request.entries.size(), 1u);
  EXPECT_EQ(request.entries[0].text, R"({"name":{"exeName":"a.exe"})");
  EXPECT_THAT(IgnoredEntries(request),
              ElementsAre("what stands behind entry 1 has no closing brace, so the library ignores it"));
}

TEST(HostFindRequest, WhatStandsBehindAZeroByteIsNotThere) {
  EXPECT_THAT(FindRequestFromText(std::string("[]\0{\"exeName\":\"a.exe\"}", 22)).entries, IsEmpty());
}

auto RefusedWith(const std::string& text) { return ThrowsMessage<std::runtime_error>(HasSubstr(text)); }

TEST(HostFindRequest, SaysWhyARequestCanNotBeRead) {
  EXPECT_THAT([] { ReadFindRequest(kFile); }, RefusedWith(kFile + " does not exist"));
  desktop::Desktop world;
  for (const auto& [bytes, fault] : {std::pair<std::string, std::string>{"", " is empty"},
                                     {"\xFF\xFE[", " is UTF-16"},
                                     {std::string("[\0{\0}\0", 6), " is UTF-16"},
                                     {"[]", " holds no object"}}) {
    world.File(kFile, bytes);
    EXPECT_THAT([] { ReadFindRequest(kFile); }, RefusedWith(kFile + fault));
  }
  const tests::LockedPath locked(kFile);
  EXPECT_THAT([] { ReadFindRequest(kFile); }, RefusedWith(kFile + " is locked by another program"));
}

}  // namespace
}  // namespace tarnwick::host
