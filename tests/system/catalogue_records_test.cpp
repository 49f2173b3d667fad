// The program's commands that make, convert and compare catalogues, as a person runs them.
#include "desktop/desktop.h"
#include "support/file_bytes.h"
#include "support/process.h"
#include "support/steam_bytes.h"
#include "support/steam_world.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace tarnwick::tests {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kFolder = R"(C:\TarnwickTest\CatalogueRecords)";

std::string Written(const std::string& name) { return ReadBytes(kFolder + "\\" + name); }

class CatalogueRecords : public testing::Test {
 protected:
  void SetUp() override {
    world_.Folder(kFolder);
    File("games.csv",
         "DisplayName,SourceEx,SourceExId,DefaultExe,checked\n"
         "\"Wren, \"\"the\"\" & Ötzi\",STEAM;GOG,70;9,wren.exe,seen\nOwl,STEAM,80,owl.exe,\n");
  }

  void File(const std::string& name, const std::string& bytes) { world_.File(kFolder + "\\" + name, bytes); }

  ProgramResult Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "catalogue");
    return RunProgram("tarnwick.exe", arguments, kFolder);
  }
  void Make(const std::string& csv, const std::string& xml) {
    const ProgramResult made = Run({"from-csv", csv, "-o", xml});
    ASSERT_EQ(made.exitCode, 0u) << made.errors;
  }

  desktop::Desktop world_;
};

TEST_F(CatalogueRecords, GoToACatalogueAndBackAlsoAnEncipheredOne) {
  Make("games.csv", "games.xml");
  EXPECT_THAT(Written("games.xml"), HasSubstr("<DisplayName>Wren, &quot;the&quot; &amp; Ötzi</DisplayName>"));
  ASSERT_EQ(Run({"encipher", "games.xml", "-o", "games.bin"}).exitCode, 0u);
  ASSERT_EQ(Run({"to-csv", "games.bin", "-o", "again.csv"}).exitCode, 0u);
  EXPECT_THAT(Written("again.csv"), HasSubstr("\"Wren, \"\"the\"\" & Ötzi\",GOG,9,"));
  Make("again.csv", "again.xml");
  EXPECT_EQ(Written("again.xml"), Written("games.xml"));
}

TEST_F(CatalogueRecords, AFaultOfACsvFileIsOneLineWithItsPlaceAndNothingIsWritten) {
  const std::pair<std::string, const char*> faults[] = {
      {"DisplayName\nWren,5\" disk\n", "bad.csv:2:7: quote inside an unquoted field"},
      {"DisplayName,Wings\nWren,2\n", "bad.csv:1:13: unknown column 'Wings'"},
      {std::string("DisplayName\nW\0n\n", 16), "bad.csv:2:2: U+0000"},
      {"DisplayName\n", "bad.csv holds no record"},
      {"\xFF\xFE" + std::string("D\0i\0s\0", 6), "bad.csv is UTF-16"},
      {"", "bad.csv:1:1: there is no header"}};
  for (const auto& [bytes, fault] : faults) {
    File("bad.csv", bytes);
    const ProgramResult result = Run({"from-csv", "bad.csv", "-o", "bad.xml"});
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_THAT(result.errors, StartsWith(std::string("tarnwick: ") + fault));
    EXPECT_EQ(result.errors.find('\n') + 1, result.errors.size());
    EXPECT_FALSE(std::filesystem::exists(kFolder + "\\bad.xml"));
  }
  EXPECT_THAT(Run({"from-csv", "none.csv", "-o", "bad.xml"}).errors, HasSubstr("none.csv does not exist"));
  EXPECT_THAT(Run({"from-csv", "games.csv", "-o", "GAMES.csv"}).errors,
              HasSubstr("is the file that is read"));
}

TEST_F(CatalogueRecords, ThatTheLibraryDoesNotReadAreWarnedOf) {
  File("a.xml", "<GameSignature><DisplayName>Wren</DisplayName></GameSignature><GameSignature>");
  const ProgramResult made = Run({"to-csv", "a.xml", "-o", "a.csv"});
  EXPECT_EQ(made.exitCode, 0u);
  EXPECT_EQ(made.errors,
            "tarnwick: a.xml opens 2 records, closes 1; the library read 1\ntarnwick: 1 record written\n");
}

TEST_F(CatalogueRecords, AFileOfHundredsOfMegabytesIsRefusedUnread) {
  world_.SparseFile(kFolder + R"(\huge.csv)", uint64_t{500} << 20);
  EXPECT_THAT(Run({"from-csv", "huge.csv", "-o", "x.xml"}).errors, HasSubstr("huge.csv has 500 MB"));
  EXPECT_THAT(Run({"to-csv", "huge.csv", "-o", "x.csv"}).errors, HasSubstr("huge.csv has 500 MB"));
}

TEST_F(CatalogueRecords, MergingKeepsTheFirstAndListsConflicts) {
  File("more.csv", "DisplayName,SourceEx,SourceExId,DefaultExe\nOwl II,STEAM,80,owl2.exe\nRook,EA,5,r.exe\n");
  Make("games.csv", "a.xml");
  Make("more.csv", "b.xml");
  const ProgramResult merged = Run({"merge", "a.xml", "b.xml", "-o", "all.xml"});
  EXPECT_EQ(merged.exitCode, 0u);
  EXPECT_THAT(merged.errors,
              AllOf(HasSubstr("kept the first of two: STEAM 80 Owl\n"),
                    HasSubstr("    DefaultExe: kept \"owl.exe\", left \"owl2.exe\"\n"),
                    HasSubstr("4 records written; left out: 0 that said the same, 1 conflict\n")));
  EXPECT_THAT(Written("all.xml"), testing::Not(HasSubstr("owl2.exe")));
}

TEST_F(CatalogueRecords, WhatXmlCanNotHoldIsRefusedWithTheRecord) {
  File("a.xml", "<GameSignature><DisplayName>W\x01</DisplayName></GameSignature>");
  const ProgramResult merged = Run({"merge", "a.xml", "a.xml", "-o", "all.xml"});
  EXPECT_EQ(merged.exitCode, 1u);
  EXPECT_THAT(merged.errors, HasSubstr("DisplayName holds U+0001, which no catalogue can hold"));
}

TEST_F(CatalogueRecords, ComparingTellsByItsCode) {
  File("more.csv", "DisplayName,SourceEx,SourceExId,DefaultExe\nOwl,STEAM,80,owl2.exe\nRook,EA,5,r.exe\n");
  Make("games.csv", "a.xml");
  Make("more.csv", "b.xml");
  EXPECT_EQ(Run({"diff", "a.xml", "a.xml"}).exitCode, 0u);
  const ProgramResult different = Run({"diff", "a.xml", "b.xml"});
  EXPECT_EQ(different.exitCode, 1u);
  EXPECT_EQ(different.output,
            "- STEAM 70 Wren, \"the\" & Ötzi\n- GOG 9 Wren, \"the\" & Ötzi\n+ EA 5 Rook\n"
            "~ STEAM 80 Owl\n    DefaultExe: \"owl.exe\" -> \"owl2.exe\"\n");
  const json rows = json::parse(Run({"diff", "a.xml", "b.xml", "--format", "json"}).output);
  EXPECT_EQ(rows["added"][0]["DisplayName"], "Rook");
  EXPECT_EQ(rows["removed"].size(), 2u);
  EXPECT_EQ(rows["changed"][0]["record"]["SourceExId"], "80");
  EXPECT_EQ(rows["changed"][0]["fields"][0],
            json({{"element", "DefaultExe"}, {"old", "owl.exe"}, {"new", "owl2.exe"}}));
  const ProgramResult missing = Run({"diff", "a.xml", "none.xml"});
  EXPECT_EQ(missing.exitCode, 2u);
  EXPECT_THAT(missing.errors, HasSubstr("none.xml does not exist"));
}

TEST_F(CatalogueRecords, ShowsTheRecordsOfANameInAnyLetterCase) {
  Make("games.csv", "MasterGameList.xml");
  const ProgramResult shown = Run({"show", "öTZI"});
  EXPECT_EQ(shown.exitCode, 0u);
  EXPECT_THAT(shown.output, StartsWith("DisplayName         Wren, \"the\" & Ötzi\n"));
  EXPECT_THAT(shown.output, HasSubstr("\n\nDisplayName"));
  const json rows = json::parse(Run({"show", "owl", "MasterGameList.xml", "--format", "json"}).output);
  EXPECT_EQ(rows, json::array({{{"DisplayName", "Owl"},
                                {"SourceEx", "STEAM"},
                                {"SourceExId", "80"},
                                {"DefaultExe", "owl.exe"}}}));
  const ProgramResult none = Run({"show", "finch", "--format", "json"});
  EXPECT_EQ(none.exitCode, 1u);
  EXPECT_EQ(none.output, "[]\n");
  EXPECT_THAT(none.errors, EndsWith("holds 'finch'\n"));
}

TEST_F(CatalogueRecords, ImportsByTheFilesExtensionOrTheFormat) {
  SteamWorld steam{kFolder + R"(\Steam)"};
  steam.RegisterSteam();
  AppInfoBytes bytes{41, {}};
  const std::string record = bytes.Record(70, bytes.App("Wren", "wren.exe"));
  steam.d.File(kFolder + R"(\Steam\appcache\appinfo.vdf)", bytes.File(record));
  const ProgramResult plain = Run({"import", "steam"});
  EXPECT_EQ(plain.exitCode, 0u) << plain.errors;
  EXPECT_THAT(plain.output, HasSubstr("\r\nWren,STEAM,70,"));
  EXPECT_EQ(plain.errors, "tarnwick: taken: 1 record\n");
  EXPECT_THAT(Run({"import", "steam", "--format", "xml"}).output, HasSubstr("<SourceExId>70</SourceExId>"));
  EXPECT_EQ(Run({"import", "steam", "-o", "s.xml"}).exitCode, 0u);
  EXPECT_THAT(Written("s.xml"), HasSubstr("<DefaultExe>wren.exe</DefaultExe>"));
  EXPECT_THAT(Run({"import", "steam", "-o", "s.txt"}).errors, HasSubstr("say which with --format"));
  EXPECT_EQ(Run({"import"}).exitCode, 2u);
}

TEST_F(CatalogueRecords, ImportsWhatLaunchersReportWithoutTheFoldersOwnCatalogue) {
  File("MasterGameList.xml", "<GameSignature><DisplayName>Wren</DisplayName></GameSignature>");
  const ProgramResult result = Run({"import", "installed", "-o", "here.csv"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_THAT(result.output, IsEmpty());
  EXPECT_THAT(result.errors, HasSubstr("tarnwick: taken: "));
  EXPECT_THAT(Written("here.csv"), StartsWith("DisplayName,SourceEx,SourceExId,"));
}

}  // namespace
}  // namespace tarnwick::tests
