#include "launchers/uplay_configurations_reader.h"

#include "support/hex_page.h"
#include "support/hostile_texts.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace tarnwick {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::Enormous;
using tests::kHuge;
using tests::Repeated;

const std::string kInstalls = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Ubisoft\Launcher\Installs\)";

const std::string kRecord =
    "root:\n"
    "  name: \"Wren\"\n"
    "  start_game:\n"
    "    online:\n"
    "      executables:\n"
    "        - path:\n"
    "            register: " +
    kInstalls +
    "123\\InstallDir\n"
    "            relative: bin\\wren.exe\n"
    "            append: sub\n"
    "    offline:\n"
    "      executables:\n"
    "        - path:\n"
    "            relative: off.exe\n";

// The one record of a text.
UplayConfigRecord ReadOne(const std::string& text) {
  const std::vector<UplayConfigRecord> records = ReadUplayConfigurations(text);
  EXPECT_THAT(records, SizeIs(1));
  return records.empty() ? UplayConfigRecord() : records.front();
}

std::string ReadName(const std::string& lines) { return ReadOne("root:\n" + lines).name; }

TEST(UplayConfigurationsReader, ReadsARecord) {
  const UplayConfigRecord record = ReadOne(kRecord);
  EXPECT_EQ(record.name, "Wren");
  EXPECT_EQ(record.installId, "123");
  EXPECT_EQ(record.unused, "");
  ASSERT_THAT(record.onlineExecutables, SizeIs(1));
  EXPECT_EQ(record.onlineExecutables[0].relative, "bin\\wren.exe");
  EXPECT_EQ(record.onlineExecutables[0].register_, kInstalls + "123\\InstallDir");
  EXPECT_EQ(record.onlineExecutables[0].append, "sub");
  ASSERT_THAT(record.offlineExecutables, SizeIs(1));
  EXPECT_EQ(record.offlineExecutables[0].relative, "off.exe");
}

TEST(UplayConfigurationsReader, WithoutALineFeedAtTheEndTheRecordIsFinished) {
  EXPECT_EQ(ReadOne("root:\n  name: Wren").name, "Wren");
  EXPECT_EQ(ReadOne("root:").name, "");
}

TEST(UplayConfigurationsReader, CarriageReturnsMakeNoDifference) {
  std::string text;
  for (const char byte : kRecord) text += byte == '\n' ? std::string("\r\n") : std::string(1, byte);
  const UplayConfigRecord record = ReadOne(text);
  EXPECT_EQ(record.name, "Wren");
  EXPECT_EQ(record.installId, "123");
  EXPECT_EQ(record.onlineExecutables.at(0).relative, "bin\\wren.exe");
  EXPECT_EQ(record.offlineExecutables.at(0).relative, "off.exe");
  EXPECT_EQ(ReadName("name: x\r\r\n"), "x\r") << "only one is removed";
}

TEST(UplayConfigurationsReader, OnlyABareRootLineOpensARecord) {
  for (const char* line : {" root:", "\troot:", "root: ", "root:x", "root: x", "Root:", "xroot:", "root"}) {
    EXPECT_THAT(ReadUplayConfigurations(std::string(line) + "\nname: Wren\n"), IsEmpty()) << line;
  }
  EXPECT_EQ(ReadName("name: A\n root:\nname: B\n"), "B") << "an indented one doesn't end a record either";
}

TEST(UplayConfigurationsReader, WhatStandsBeforeTheFirstRootIsPassedOver) {
  EXPECT_EQ(
      ReadOne(std::string("\x0A\x96\x10\x08\x00\x1A\xFF", 7) + "name: X\nonline:\n- path:\nroot:\nname: Y\n")
          .name,
      "Y");
}

TEST(UplayConfigurationsReader, ARootLineFinishesTheRecordBefore) {
  const auto records = ReadUplayConfigurations("root:\nname: A\nonline:\nroot:\n- path:\nroot:\nname: C\n");
  ASSERT_THAT(records, SizeIs(3));
  EXPECT_EQ(records[0].name, "A");
  EXPECT_EQ(records[1].name, "") << "a record is kept whatever it holds";
  EXPECT_THAT(records[1].onlineExecutables, IsEmpty()) << "the section ended with the record";
  EXPECT_EQ(records[2].name, "C");
}

TEST(UplayConfigurationsReader, TheLastNameLineIsTheName) {
  EXPECT_EQ(ReadName("name: A\nlocalizations:\n      name: B\n"), "B");
  EXPECT_EQ(ReadName("name: A\nname:\n"), "");
  EXPECT_EQ(ReadName("name: A\nname:   \n"), "");
  EXPECT_EQ(ReadName("name: A\nName: B\n"), "A");
  EXPECT_EQ(ReadName("name: A\n- name: B\n"), "A") << "a line must begin with the word";
}

TEST(UplayConfigurationsReader, OnlyAPairOfQuotesIsRemoved) {
  EXPECT_EQ(ReadName("name: \"The Wren\"\n"), "The Wren");
  EXPECT_EQ(ReadName("name: \"The Wren\n"), "\"The Wren");
  EXPECT_EQ(ReadName("name: The Wren\"\n"), "The Wren\"");
  EXPECT_EQ(ReadName("name: \"\n"), "\"") << "one quote alone stays";
  EXPECT_EQ(ReadName("name: \"\"\n"), "");
  EXPECT_EQ(ReadName("name: \"\"x\"\"\n"), "\"x\"") << "one from each end";
  EXPECT_EQ(ReadName("name: 'x'\n"), "'x'");
}

TEST(UplayConfigurationsReader, AValueKeepsItsTrailingBlanksAndColons) {
  EXPECT_EQ(ReadName("name:Wren: Book 2  \n"), "Wren: Book 2  ");
  EXPECT_EQ(ReadName("name: \t Wren\n"), "Wren");
  EXPECT_EQ(ReadName("name: \"Wren\" \n"), "\"Wren\" ") << "the quote is not at the end";
  EXPECT_EQ(ReadName("name: Игра 游戏 é™\n"), "Игра 游戏 é™");
}

TEST(UplayConfigurationsReader, LinesOfEntriesNeedASection) {
  const UplayConfigRecord record = ReadOne("root:\n- path:\nrelative: a\nregister: b\nappend: c\n");
  EXPECT_THAT(record.onlineExecutables, IsEmpty());
  EXPECT_THAT(record.offlineExecutables, IsEmpty());
}

TEST(UplayConfigurationsReader, LinesOfEntriesNeedAnEntry) {
  const UplayConfigRecord record = ReadOne("root:\nonline:\nrelative: a\nregister: b\nappend: c\n- path:\n");
  ASSERT_THAT(record.onlineExecutables, SizeIs(1));
  EXPECT_EQ(record.onlineExecutables[0].relative, "");
  EXPECT_EQ(record.onlineExecutables[0].register_, "");
  EXPECT_EQ(record.onlineExecutables[0].append, "");
  EXPECT_THAT(ReadOne("root:\noffline:\n- path:\nonline:\nrelative: a\n").offlineExecutables.at(0).relative,
              IsEmpty())
      << "the other section's entry doesn't count";
}

TEST(UplayConfigurationsReader, ASectionsWordMustBeTheWholeLine) {
  const UplayConfigRecord record =
      ReadOne("root:\nonline: x\n- path:\nxonline:\n- path:\nOnline:\n- path:\n");
  EXPECT_THAT(record.onlineExecutables, IsEmpty());
  EXPECT_THAT(ReadOne("root:\n \t online:\n- path:\n").onlineExecutables, SizeIs(1))
      << "leading blanks don't matter";
  EXPECT_THAT(ReadOne("root:\nonline: \n- path:\n").onlineExecutables, IsEmpty()) << "trailing ones do";
}

TEST(UplayConfigurationsReader, ASectionLastsUntilTheNext) {
  const UplayConfigRecord record = ReadOne(
      "root:\nonline:\n- path:\nrelative: a\nother:\npath: x\nrelative: b\noffline:\n- path: y\nrelative: "
      "c\n");
  ASSERT_THAT(record.onlineExecutables, SizeIs(2)) << "path: counts with and without its dash, in any depth";
  EXPECT_EQ(record.onlineExecutables[0].relative, "a");
  EXPECT_EQ(record.onlineExecutables[1].relative, "b");
  ASSERT_THAT(record.offlineExecutables, SizeIs(1));
  EXPECT_EQ(record.offlineExecutables[0].relative, "c");
}

TEST(UplayConfigurationsReader, ARegisterLineFillsARelativeThatIsStillMissing) {
  const UplayExecutable both =
      ReadOne("root:\nonline:\n- path:\nregister: r\nrelative: a\n").onlineExecutables.at(0);
  EXPECT_EQ(both.relative, "a");
  EXPECT_EQ(both.register_, "r");
  const UplayExecutable alone = ReadOne("root:\nonline:\n- path:\nregister: r\n").onlineExecutables.at(0);
  EXPECT_EQ(alone.relative, "r");
  const UplayExecutable late =
      ReadOne("root:\nonline:\n- path:\nrelative: a\nregister: r\nregister: s\n").onlineExecutables.at(0);
  EXPECT_EQ(late.relative, "a");
  EXPECT_EQ(late.register_, "r") << "the first register line stays";
}

TEST(UplayConfigurationsReader, TheLastRelativeAndAppendLinesCount) {
  const UplayExecutable entry =
      ReadOne("root:\nonline:\n- path:\nrelative: \"a\"\nrelative: \"b\"\nappend: c\nappend: d\n")
          .onlineExecutables.at(0);
  EXPECT_EQ(entry.relative, "b");
  EXPECT_EQ(entry.append, "d");
}

TEST(UplayConfigurationsReader, TheIdComesFromTheOfflineEntriesFirst) {
  const auto path = [](const std::string& id) {
    return "- path:\nregister: " + kInstalls + id + "\\InstallDir\n";
  };
  EXPECT_EQ(ReadOne("root:\nonline:\n" + path("1") + "offline:\n" + path("2")).installId, "2");
  EXPECT_EQ(ReadOne("root:\nonline:\n" + path("1") + "offline:\n" + path("x")).installId, "1");
  EXPECT_EQ(ReadOne("root:\nonline:\n" + path("1x") + path("7") + path("8")).installId, "7")
      << "an entry without an id gives way to the next";
  EXPECT_EQ(ReadOne("root:\nname: A\n").installId, "");
}

TEST(UplayConfigurationsReader, ExtractsTheIdOfARegisterText) {
  EXPECT_EQ(ExtractInstallId(kInstalls + "123\\InstallDir"), "123");
  EXPECT_EQ(ExtractInstallId(R"(Ubisoft\Launcher\Installs\0\)"), "0");
  for (const char* text :
       {R"(Ubisoft\Launcher\Installs\12a3\InstallDir)", R"(Ubisoft\Launcher\Installs\123)",
        R"(Ubisoft\Launcher\Installs\\InstallDir)", R"(Ubisoft\Launcher\Installs\)",
        R"(ubisoft\launcher\installs\123\InstallDir)", R"(Ubisoft\Launcher\Installs\ 1\)",
        R"(Ubisoft\Launcher\Installs\-1\)", "Ubisoft\\Launcher\\Installs\\\xD9\xA1\\", ""}) {
    EXPECT_EQ(ExtractInstallId(text), "") << text;
  }
  EXPECT_EQ(ExtractInstallId(R"(Ubisoft\Launcher\Installs\x\Ubisoft\Launcher\Installs\5\)"), "")
      << "only the first occurrence counts";
}

TEST(UplayConfigurationsReader, AFinishedRecordKeepsAnIdThatItHas) {
  std::vector<UplayConfigRecord> records;
  UplayConfigRecord record;
  record.installId = "9";
  record.offlineExecutables.push_back({"", kInstalls + "1\\", ""});
  FinishUplayRecord(records, record);
  ASSERT_THAT(records, SizeIs(1));
  EXPECT_EQ(records[0].installId, "9");
}

TEST(UplayConfigurationsReader, GivesALinesValue) {
  EXPECT_EQ(GetUplayLineValue("a: b: c "), "b: c ");
  EXPECT_EQ(GetUplayLineValue("a:\tb"), "b");
  EXPECT_EQ(GetUplayLineValue("a"), "");
  EXPECT_EQ(GetUplayLineValue("a:"), "");
  EXPECT_EQ(GetUplayLineValue("a: \t "), "");
  EXPECT_EQ(GetUplayLineValue(""), "");
}

TEST(UplayConfigurationsReader, ACutFileKeepsItsEarlierRecords) {
  const std::string text = kRecord + "root:\nname: Owl\n";
  for (size_t size = 0; size <= text.size(); ++size) {
    const auto records = ReadUplayConfigurations(text.substr(0, size));
    ASSERT_LE(records.size(), 2u) << size;
    if (size < 5) {
      EXPECT_THAT(records, IsEmpty());
    }
    if (size >= kRecord.size()) {
      EXPECT_EQ(records.at(0).offlineExecutables.at(0).relative, "off.exe") << size;
    }
    if (records.size() == 2) {
      EXPECT_TRUE(std::string("Owl").starts_with(records[1].name));
    }
  }
}

TEST(UplayConfigurationsReader, MeaninglessTextsHoldNoRecord) {
  for (const std::string& text : tests::MeaninglessTexts(kRecord)) {
    EXPECT_THAT(ReadUplayConfigurations(text), IsEmpty());
    EXPECT_LE(ReadUplayConfigurations("root:\n" + text).size(), 1u);
  }
}

TEST(UplayConfigurationsReader, HugeTextsAreReadOnce) {
  for (const char* pattern :
       {"x", "\"", "{", "root: ", "name: x\n", "- path:\n", "relative: x\n", "\n", "\r\n"}) {
    EXPECT_THAT(ReadUplayConfigurations("root:\nonline:\n" + Enormous(pattern)), SizeIs(1)) << pattern;
  }
  EXPECT_EQ(ReadName("name: " + std::string(kHuge, 'x')).size(), kHuge) << "one line";
  EXPECT_THAT(ReadUplayConfigurations(Repeated("root:\n", 1 << 20)), SizeIs((1 << 20) / 6));
}

TEST(UplayConfigurationsReader, TheExampleOfItsPage) {
  const UplayConfigRecord record = ReadOne(tests::HexExample("uplay-configurations"));
  EXPECT_EQ(record.name, "Зимородок");
  EXPECT_EQ(record.installId, "123");
  EXPECT_EQ(record.offlineExecutables.at(0).relative, "bin\\wren.exe");
  EXPECT_THAT(record.onlineExecutables, IsEmpty());
}

TEST(UplayConfigurationsReader, ReadsARealFile) {
  const auto text = tests::Sample("ubisoft/configurations_2019.bin");
  if (!text) GTEST_SKIP() << "TARNWICK_SAMPLES names no folder with this sample";
  const auto records = ReadUplayConfigurations(*text);
  EXPECT_THAT(records, SizeIs(665));
  const auto settlers = std::find_if(records.begin(), records.end(), [](const UplayConfigRecord& record) {
    return record.name.starts_with("The Settlers 7");
  });
  ASSERT_NE(settlers, records.end());
  size_t ids = 0;
  for (const UplayConfigRecord& record : records) ids += !record.installId.empty();
  EXPECT_EQ(ids, 25u);
}

}  // namespace
}  // namespace tarnwick
