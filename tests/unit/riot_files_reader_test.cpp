#include "launchers/riot_files_reader.h"

#include "support/hex_page.h"
#include "support/hostile_texts.h"
#include "support/log_capture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::Enormous;
using tests::kHuge;
using tests::Repeated;

std::string Helper(const std::string& text) {
  std::istringstream json(text);
  return ReadRiotLaunchHelper(json);
}

std::string Folder(const std::string& text) {
  std::istringstream yaml(text);
  return ReadYamlInstallPath(yaml, "yaml");
}

const std::string kJson = R"({"rc_default": "C:/default.exe", "rc_live": "C:\\Riot Games\\Клиент.exe"})";

TEST(RiotFilesReader, ReadsTheLaunchHelperAsItStands) {
  EXPECT_EQ(Helper(kJson), R"(C:\\Riot Games\\Клиент.exe)");
}

TEST(RiotFilesReader, AHelperThatIsNotThereIsEmpty) {
  for (const char* text :
       {"", "{}", R"({"rc_default":"x"})", R"({"rc_live")", R"({"rc_live":)", R"({"rc_live":5})",
        R"({"rc_live":"x)", R"({"rc_live":""})", R"({"RC_LIVE":"x"})"}) {
    EXPECT_EQ(Helper(text), "") << text;
  }
}

TEST(RiotFilesReader, TheHelperIsWhateverIsQuotedNext) {
  EXPECT_EQ(Helper(R"({"rc_live": null, "rc_beta": "x"})"), "rc_beta");
  EXPECT_EQ(Helper(R"({"rc_live": "a\"b"})"), "a\\") << "no escape is honoured";
}

TEST(RiotFilesReader, ReadsTheInstallFolder) {
  EXPECT_EQ(
      Folder("a: b\nproduct_install_full_path: \"C:/Riot Games/VALORANT/live\"\nproduct_install_root: x\n"),
      "C:/Riot Games/VALORANT/live");
}

TEST(RiotFilesReader, OnlyTheFirstSuchLineCounts) {
  EXPECT_EQ(Folder("product_install_full_path: a\nproduct_install_full_path: b\n"), "a");
  EXPECT_EQ(Folder("product_install_full_path:\nproduct_install_full_path: b\n"), "");
}

TEST(RiotFilesReader, BlanksTabsAndQuotesGoFromBothEnds) {
  EXPECT_EQ(Folder("product_install_full_path:\t \"C:/a b\" \t"), "C:/a b");
  EXPECT_EQ(Folder("product_install_full_path: \" \"C:/a\"\" \""), "C:/a");
  EXPECT_EQ(Folder("product_install_full_path: \"C:/a\"b\""), "C:/a\"b") << "those inside stay";
  EXPECT_EQ(Folder("product_install_full_path:   \"\"  "), "");
}

TEST(RiotFilesReader, OtherDecorationStays) {
  EXPECT_EQ(Folder("product_install_full_path: 'C:/a'"), "'C:/a'");
  EXPECT_EQ(Folder("product_install_full_path: C:/a # here"), "C:/a # here");
  EXPECT_EQ(Folder("product_install_full_path: \"C:\\\\Игры\\\\游戏\""), R"(C:\\Игры\\游戏)");
}

TEST(RiotFilesReader, TheValueStartsAtTheLinesFirstColon) {
  EXPECT_EQ(Folder("    product_install_full_path: C:/a"), "C:/a");
  EXPECT_EQ(Folder("x: product_install_full_path: C:/a"), "product_install_full_path: C:/a");
}

TEST(RiotFilesReader, TheKeyNeedsItsColon) {
  EXPECT_EQ(Folder("product_install_full_path C:/a\n"), "");
  EXPECT_EQ(Folder("product_install_full_path : C:/a\n"), "");
  EXPECT_EQ(Folder("other: x\n"), "");
  EXPECT_EQ(Folder(""), "");
}

TEST(RiotFilesReader, AFailureWhileReadingGivesNoFolder) {
  tests::BrokenStream yaml("a: b\nproduct_install_full_pa");
  const tests::LogCapture lines;
  EXPECT_EQ(ReadYamlInstallPath(yaml, "C:\\é\\x.yaml"), "");
  EXPECT_THAT(lines.Lines(),
              ElementsAre("[RiotPlatformSearch] Error reading YAML file (C:\\é\\x.yaml): the disk is gone"));
}

TEST(RiotFilesReader, AFailureWhileReadingTheHelperIsTheCallersToReport) {
  tests::BrokenStream json(kJson);
  EXPECT_THROW(ReadRiotLaunchHelper(json), std::runtime_error);
}

TEST(RiotFilesReader, AStreamThatIsNotOpenHoldsNothing) {
  std::istringstream yaml("product_install_full_path: C:/a");
  yaml.setstate(std::ios::failbit);
  const tests::LogCapture lines;
  EXPECT_EQ(ReadYamlInstallPath(yaml, "x"), "");
  EXPECT_EQ(ReadRiotLaunchHelper(yaml), "");
  EXPECT_THAT(lines.Lines(), IsEmpty());
}

TEST(RiotFilesReader, CutFilesGiveTheStartOfTheFolderAndTheWholeHelperOrNothing) {
  const std::string yaml = "a: b\nproduct_install_full_path: \"C:/Riot\"\n";
  for (size_t size = 0; size <= yaml.size(); ++size) {
    EXPECT_TRUE(std::string("C:/Riot").starts_with(Folder(yaml.substr(0, size)))) << size;
  }
  for (size_t size = 0; size <= kJson.size(); ++size) {
    const std::string helper = Helper(kJson.substr(0, size));
    EXPECT_TRUE(helper.empty() || helper == R"(C:\\Riot Games\\Клиент.exe)") << size;
  }
}

TEST(RiotFilesReader, MeaninglessTextsGiveNothing) {
  for (const std::string& text : tests::MeaninglessTexts("product_install_full_path: C:/a")) {
    EXPECT_EQ(Folder(text), "");
    EXPECT_EQ(Helper(text), "");
  }
}

TEST(RiotFilesReader, HugeTextsAreReadOnce) {
  for (const char* pattern : {"x", "\"", "{", "}", ":", "product_install_full_path", "\"rc_live\"", "\n"}) {
    const std::string text = Enormous(pattern);
    EXPECT_LE(Folder(text).size(), kHuge) << pattern;
    EXPECT_LE(Helper(text).size(), kHuge) << pattern;
  }
  EXPECT_EQ(Folder("product_install_full_path: " + Repeated("\" ", kHuge) + "x").size(), 1u);
}

TEST(RiotFilesReader, TheExamplesOfTheirPage) {
  EXPECT_EQ(Helper(tests::HexExample("riot-metadata", 0)),
            "C:/Riot Games/Riot Client/RiotClientServices.exe");
  EXPECT_EQ(Folder(tests::HexExample("riot-metadata", 1)), "C:/Игры/VALORANT/live");
}

}  // namespace
}  // namespace tarnwick
