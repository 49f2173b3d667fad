// The scan through the built library, with its own strategies.
#include "catalogue/game_signature.h"
#include "common/catalogue_text.h"
#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "support/current_directory.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"
#include "support/library.h"
#include "support/png_pixels.h"
#include "support/strategy_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <regex>
#include <thread>

namespace tarnwick::tests {
namespace {

using common::CatalogueText;
using testing::Contains;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

constexpr char kFolder[] = R"(C:\TarnwickTest\ScanExport)";
constexpr char kKey[] = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickTest\ScanExport)";

// The timestamped lines, which are the driver's and its threads', without the timestamps. The strategies' own
// lines carry none, and those of the threads come in any order.
std::vector<std::string> DriverLines(const DebugCapture& capture) {
  static const std::regex kStamp(R"(^\[Tarnwick\] \[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] ([^]*)\n$)");
  std::vector<std::string> lines;
  for (const std::string& text : capture.Raw()) {
    std::smatch match;
    if (!std::regex_match(text, match, kStamp)) continue;
    if (match[1].str().find("START (in thread)") == std::string::npos) lines.push_back(match[1]);
  }
  return lines;
}

class ScanExport : public testing::Test {
 protected:
  void SetUp() override {
    desktop_.Folder(kFolder);
    there_.emplace(kFolder);
  }
  void TearDown() override { there_.reset(); }

  // A game that the first strategy finds, installed. That strategy wants blanks inside quotes.
  GameSignature Install(const std::string& name) {
    const std::string folder = std::string(kFolder) + "\\Games\\" + name;
    desktop_.Executable(folder + "\\game.exe");
    const std::string quoted = "\"" + folder + "\"";
    desktop_.String(std::string(kKey) + "\\" + name, "InstallLocation", quoted, desktop::View::kNative);
    desktop_.String(std::string(kKey) + "\\" + name, "InstallLocation", quoted, desktop::View::k32);
    GameSignature game;
    game.DisplayName = name;
    game.RegistryKey = std::string(kKey) + "\\" + name;
    game.DefaultExe = "game.exe";
    return game;
  }

  GameSignature Missing(const std::string& name) {
    GameSignature game;
    game.DisplayName = name;
    return game;
  }

  std::string Catalogue(const std::string& fileName, const GameList& games) {
    const std::string path = std::string(kFolder) + "\\" + fileName;
    desktop_.File(path, CatalogueText(games));
    return path;
  }

  // The whole answer.
  std::string Scan(const char* path) {
    const GuardedBuffer buffer(4 << 20);
    const int length = library_.IA_RunMultiPlatformGameScanJson(path, buffer.Data(), buffer.Size());
    EXPECT_EQ(static_cast<size_t>(length), buffer.Text().size());
    return buffer.Text();
  }

  std::vector<std::string> FoundNames(const char* path) {
    std::vector<std::string> names;
    for (const auto& game : nlohmann::json::parse(Scan(path))) names.push_back(game.at("name"));
    return names;
  }

  desktop::Desktop desktop_;
  std::optional<CurrentDirectory> there_;
  Library library_{TARNWICK_DLL};
};

TEST_F(ScanExport, FindsAnInstalledGame) {
  const std::string catalogue = Catalogue("list.xml", {Missing("Absent"), Install("Foo")});
  const std::string text = Scan(catalogue.c_str());
  const auto json = nlohmann::json::parse(text);
  ASSERT_EQ(json.size(), 1u) << text;
  EXPECT_EQ(json.at(0).at("name"), "Foo");
  EXPECT_EQ(json.at(0).at("loc"), std::string(kFolder) + "\\Games\\Foo\\game.exe");
  EXPECT_EQ(json.at(0).at("exeName"), "game.exe");
  EXPECT_EQ(json.at(0).at("launchUrl"), "");
  EXPECT_TRUE(json.at(0).at("icon").is_string());
  EXPECT_THAT(text,
              testing::StartsWith(
                  R"([{"name":"Foo","loc":"C:\\TarnwickTest\\ScanExport\\Games\\Foo\\game.exe","icon":")"));
  EXPECT_THAT(text, testing::EndsWith(R"(","launchUrl":"","exeName":"game.exe"}])"));
}

TEST_F(ScanExport, LogsAWholeScanInOrder) {
  const std::string catalogue = Catalogue("list.xml", {Missing("Absent"), Install("Foo")});
  const DebugCapture capture;
  Scan(catalogue.c_str());
  std::vector<std::string> expected = {
      std::string(50, '='),
      "IA_RunMultiPlatformGameScanJson START",
      "Input config path (raw UTF-8): " + catalogue,
      "Using XML file: " + catalogue,
      "Calling XmlParser::LoadGameListFromXml...",
      "Loaded 2 games from XML.",
      "Defining scan strategies...",
      "Strategies defined: " + std::to_string(std::size(kStrategyRows)),
      "Grouping strategies by priority...",
      "Priority groups created: " + std::to_string(StrategiesByLevel().size()),
      "Pending games: 2"};
  for (const auto& [level, strategies] : StrategiesByLevel()) {
    expected.push_back("Processing priority level: " + std::to_string(level));
    for (const std::string& name : strategies) expected.push_back("Launching thread for strategy: " + name);
    for (const std::string& name : strategies) {
      const char* found = name == "Default Registry Scan" ? "1" : "0";
      expected.push_back("Strategy [" + name + "] finished. Found: " + found);
    }
  }
  expected.push_back("Total raw results: 1");
  expected.push_back("Unique results after deduplication: 1");
  expected.push_back("Successfully finished IA_RunMultiPlatformGameScanJson");
  EXPECT_THAT(DriverLines(capture), ElementsAreArray(expected));
}

TEST_F(ScanExport, StartsEveryStrategyOnce) {
  const std::string catalogue = Catalogue("list.xml", {Missing("Absent")});
  const DebugCapture capture;
  Scan(catalogue.c_str());
  const std::vector<std::string> lines = capture.Lines();
  for (const StrategyRow& row : kStrategyRows) {
    const std::string start = std::string("Strategy [") + row.name + "] START (in thread)";
    EXPECT_EQ(std::count(lines.begin(), lines.end(), start), 1) << start;
  }
}

TEST_F(ScanExport, WithoutAPathTakesTheDecryptedCatalogueFirst) {
  Catalogue("MasterGameList.xml", {Install("Plain")});
  Catalogue("MasterGameList_decrypted.xml", {Install("Decrypted")});
  for (const char* path : {static_cast<const char*>(nullptr), ""}) {
    const DebugCapture capture;
    EXPECT_THAT(FoundNames(path), testing::ElementsAre("Decrypted"));
    EXPECT_THAT(DriverLines(capture), Contains("Using XML file: MasterGameList_decrypted.xml"));
    EXPECT_THAT(capture.LinesWith("Fallback"), IsEmpty());
    EXPECT_THAT(capture.LinesWith("Input"),
                testing::ElementsAre(std::string("Input config path (raw UTF-8): ") +
                                     (path == nullptr ? "null" : "")));
  }
}

TEST_F(ScanExport, WithoutAPathFallsBackOnThePlainCatalogue) {
  Catalogue("MasterGameList.xml", {Install("Plain")});
  const DebugCapture capture;
  EXPECT_THAT(FoundNames(nullptr), testing::ElementsAre("Plain"));
  const std::vector<std::string> lines = DriverLines(capture);
  EXPECT_THAT(std::vector<std::string>(lines.begin() + 2, lines.begin() + 6),
              testing::ElementsAre("Input config path (raw UTF-8): null", "Fallback to MasterGameList.xml",
                                   "Using XML file: MasterGameList.xml",
                                   "Calling XmlParser::LoadGameListFromXml..."));
}

TEST_F(ScanExport, CallersMissingPathFallsBackOnThePlainCatalogueToo) {
  Catalogue("MasterGameList.xml", {Install("Plain")});
  Catalogue("MasterGameList_decrypted.xml", {Install("Decrypted")});
  const DebugCapture capture;
  EXPECT_THAT(FoundNames(R"(C:\no such folder\list.xml)"), testing::ElementsAre("Plain"));
  EXPECT_THAT(DriverLines(capture), Contains("Fallback to MasterGameList.xml"));
}

TEST_F(ScanExport, CallersOwnPathWinsOverTheDefaults) {
  Catalogue("MasterGameList.xml", {Install("Plain")});
  const std::string own = Catalogue("own.xml", {Install("Own")});
  const DebugCapture capture;
  EXPECT_THAT(FoundNames(own.c_str()), testing::ElementsAre("Own"));
  EXPECT_THAT(capture.LinesWith("Fallback"), IsEmpty());
}

TEST_F(ScanExport, TakesARelativePath) {
  Catalogue("own.xml", {Install("Own")});
  EXPECT_THAT(FoundNames("own.xml"), testing::ElementsAre("Own"));
}

TEST_F(ScanExport, NoCatalogueIsAnEmptyArray) {
  const GuardedBuffer buffer(16);
  const DebugCapture capture;
  EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(nullptr, buffer.Data(), buffer.Size()), 2);
  EXPECT_EQ(buffer.Text(), "[]");
  EXPECT_THAT(capture.Lines(),
              testing::ElementsAre(std::string(50, '='), "IA_RunMultiPlatformGameScanJson START",
                                   "Input config path (raw UTF-8): null",
                                   "Using XML file: MasterGameList_decrypted.xml", "XML file not found!"));
}

TEST_F(ScanExport, CatalogueWithoutRecordsIsAnEmptyArray) {
  const GuardedBuffer buffer(16);
  for (const char* content : {"", "<ArrayOfGameSignature></ArrayOfGameSignature>", "<GameSignature>"}) {
    const std::string path = std::string(kFolder) + "\\empty.xml";
    desktop_.File(path, content);
    const DebugCapture capture;
    EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(path.c_str(), buffer.Data(), buffer.Size()), 2);
    EXPECT_EQ(buffer.Text(), "[]");
    EXPECT_THAT(DriverLines(capture),
                testing::ElementsAre(std::string(50, '='), "IA_RunMultiPlatformGameScanJson START",
                                     "Input config path (raw UTF-8): " + path, "Using XML file: " + path,
                                     "Calling XmlParser::LoadGameListFromXml...", "Loaded 0 games from XML.",
                                     "No games loaded, returning empty array."));
  }
}

TEST_F(ScanExport, FolderInPlaceOfTheCatalogueIsAnEmptyArray) {
  const DebugCapture capture;
  EXPECT_EQ(Scan(kFolder), "[]");
  EXPECT_EQ(capture.Lines().back(), "No games loaded, returning empty array.");
}

TEST_F(ScanExport, NothingFoundIsAnEmptyArrayOnTheOrdinaryWay) {
  const std::string catalogue = Catalogue("list.xml", {Missing("Absent")});
  const DebugCapture capture;
  EXPECT_EQ(Scan(catalogue.c_str()), "[]");
  EXPECT_EQ(DriverLines(capture).back(), "Successfully finished IA_RunMultiPlatformGameScanJson");
}

TEST_F(ScanExport, CutsTheTextToEverySize) {
  const std::string catalogue = Catalogue("list.xml", {Install("Foo")});
  const std::string text = Scan(catalogue.c_str());
  const int whole = static_cast<int>(text.size());
  std::vector<int> sizes;
  for (int size = 1; size <= 40; ++size) sizes.push_back(size);
  for (int size = whole - 2; size <= whole + 3; ++size) sizes.push_back(size);
  for (const int size : sizes) {
    const GuardedBuffer buffer(size);
    EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), buffer.Data(), size), whole)
        << size;
    EXPECT_EQ(buffer.Text(), text.substr(0, static_cast<size_t>(size) - 1)) << size;
  }
}

TEST_F(ScanExport, CutsInsideACharacter) {
  const std::string catalogue = Catalogue("list.xml", {Install("Игра")});
  const GuardedBuffer buffer(12);  // behind [{"name":" one and a half characters fit
  EXPECT_GT(library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), buffer.Data(), buffer.Size()), 12);
  EXPECT_EQ(buffer.Text(), "[{\"name\":\"\xD0");
}

TEST_F(ScanExport, GivesALongTextToASmallBuffer) {
  GameList games;
  for (int i = 0; i < 40; ++i)
    games.push_back(Install("A game with a rather long name, number " + std::to_string(i)));
  const std::string catalogue = Catalogue("list.xml", games);
  const std::string text = Scan(catalogue.c_str());
  EXPECT_GT(text.size(), 5000u);
  const GuardedBuffer buffer(100);
  EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), buffer.Data(), 100),
            static_cast<int>(text.size()));
  EXPECT_EQ(buffer.Text(), text.substr(0, 99));
}

TEST_F(ScanExport, ScansWithoutABuffer) {
  const std::string catalogue = Catalogue("list.xml", {Install("Foo")});
  const int whole = static_cast<int>(Scan(catalogue.c_str()).size());
  const GuardedBuffer buffer(100);
  const DebugCapture capture;
  EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), nullptr, 100), whole);
  EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), nullptr, 0), whole);
  EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), buffer.Data(), 0), whole);
  EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), buffer.Data(), -1), whole);
  EXPECT_TRUE(buffer.Untouched());
  EXPECT_EQ(capture.LinesWith("Successfully").size(), 4u);
}

TEST_F(ScanExport, EmptyAnswersNeverOverrunTinyBuffers) {
  for (int size = 0; size <= 4; ++size) {
    const GuardedBuffer buffer(size);
    EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson("missing.xml", buffer.Data(), size), 2);
    if (size > 0) {
      EXPECT_EQ(buffer.Text(), size > 2 ? "[]" : "") << size;
    }
  }
  EXPECT_EQ(library_.IA_RunMultiPlatformGameScanJson("missing.xml", nullptr, 100), 2);
}

TEST_F(ScanExport, TakesCataloguesOfAnyName) {
  for (const char* name : {"Список игр.xml", "游戏列表.xml", "Jeux préférés\\é à ü.xml", "a b'c&d.xml"}) {
    const std::string catalogue = Catalogue(name, {Install("Foo")});
    const DebugCapture capture;
    EXPECT_THAT(FoundNames(catalogue.c_str()), testing::ElementsAre("Foo")) << name;
    EXPECT_THAT(capture.LinesWith("Fallback"), IsEmpty());
  }
}

TEST_F(ScanExport, BrokenUtf8InThePathIsAMissingFile) { EXPECT_EQ(Scan("C:\\\xFF\xC3.xml"), "[]"); }

TEST_F(ScanExport, CarriesNamesOfAllKinds) {
  for (const char* name : {"Тетрис", "俄罗斯方块", "Pokémon Café", "\xF0\x9F\x8E\xAE game"}) {
    const std::string catalogue = Catalogue("list.xml", {Install(name)});
    EXPECT_THAT(FoundNames(catalogue.c_str()), testing::ElementsAre(name));
  }
}

TEST_F(ScanExport, TwoCallsAtOnceRunOneBehindTheOther) {
  const std::string catalogue = Catalogue("list.xml", {Install("Foo")});
  const DebugCapture capture;
  std::vector<int> lengths(4);
  {
    std::vector<std::jthread> threads;
    for (int& length : lengths) {
      threads.emplace_back(
          [&] { length = library_.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), nullptr, 0); });
    }
  }
  EXPECT_EQ(lengths, std::vector<int>(4, lengths[0]));
  std::vector<std::string> frame = DriverLines(capture);
  std::erase_if(frame, [](const std::string& line) {
    return line != "IA_RunMultiPlatformGameScanJson START" &&
           line != "Successfully finished IA_RunMultiPlatformGameScanJson";
  });
  ASSERT_EQ(frame.size(), 8u);
  for (size_t i = 0; i < frame.size(); i += 2) {
    EXPECT_EQ(frame[i], "IA_RunMultiPlatformGameScanJson START");
    EXPECT_EQ(frame[i + 1], "Successfully finished IA_RunMultiPlatformGameScanJson");
  }
}

TEST_F(ScanExport, ReadsTheCatalogueAfreshAtEachCall) {
  const std::string catalogue = Catalogue("list.xml", {Install("Foo")});
  EXPECT_THAT(FoundNames(catalogue.c_str()), testing::ElementsAre("Foo"));
  Catalogue("list.xml", {Install("Bar")});
  EXPECT_THAT(FoundNames(catalogue.c_str()), testing::ElementsAre("Bar"));
}

TEST_F(ScanExport, GivesEachGameItsOwnIcon) {
  GameList games = {Install("Red"), Install("Green")};
  desktop::ExecutableOptions coloured;
  coloured.icons = {{{{32, 0xC02020}}}};
  desktop_.Executable(std::string(kFolder) + "\\Games\\Red\\game.exe", coloured);
  coloured.icons = {{{{32, 0x20A040}}}};
  desktop_.Executable(std::string(kFolder) + "\\Games\\Green\\game.exe", coloured);
  const auto json = nlohmann::json::parse(Scan(Catalogue("list.xml", games).c_str()));
  ASSERT_EQ(json.size(), 2u);
  EXPECT_EQ(DecodePngDataUri(json.at(0).at("icon").get<std::string>()).CentreRgb(), 0xC02020u);
  EXPECT_EQ(DecodePngDataUri(json.at(1).at("icon").get<std::string>()).CentreRgb(), 0x20A040u);
}

TEST_F(ScanExport, LeavesTheCurrentDirectoryAlone) {
  const std::string catalogue = Catalogue("list.xml", {Install("Foo")});
  Scan(catalogue.c_str());
  wchar_t now[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, now);
  EXPECT_EQ(std::wstring(now), L"C:\\TarnwickTest\\ScanExport");
}

}  // namespace
}  // namespace tarnwick::tests
