// docs/troubleshooting.md: each case is built, its command is taken from the page, the lines that the page
// shows are looked for in what explain says, and the remedy is tried.
#include "common/catalogue_text.h"
#include "desktop/desktop.h"
#include "desktop/steam_files.h"
#include "foundation/machine/known_folders.h"
#include "host/catalogue/check_codes.h"
#include "host/catalogue/check_file.h"
#include "host/explain/explanation.h"
#include "host/explain/explanation_text.h"
#include "host/explain/path_explanation.h"
#include "host/options.h"
#include "support/source_folder.h"
#include "support/steam_world.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::View;
using host::Explanation;
using host::GameExplanation;
using host::ObservedScan;
using host::ObserveScan;
using host::Options;
using host::Outcome;
using testing::ElementsAre;
using testing::HasSubstr;
using tests::kUninstallKey;
using tests::SteamSignature;

using Lines = std::vector<std::string>;

constexpr char kCatalogue[] = R"(C:\TarnwickTrouble\games.xml)";
const std::string kSteam = R"(C:\Steam)";
const std::string kSteamKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Valve\Steam)";

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// ---- The page

struct PageCase {
  std::string command;
  Lines shown;
};

Lines Page() {
  std::ifstream file(tests::SourceFolder() + "/docs/troubleshooting.md", std::ios::binary);
  return LinesOf({std::istreambuf_iterator<char>(file), {}});
}

Lines Headings() {
  Lines headings;
  for (const std::string& line : Page()) {
    if (line.starts_with("## ")) headings.push_back(line.substr(3));
  }
  return headings;
}

// The lines of the case's first fenced block of that kind.
Lines Block(const Lines& page, const std::string& heading, const std::string& kind) {
  auto line = std::find(page.begin(), page.end(), "## " + heading);
  line = std::find(line, page.end(), "```" + kind);
  const auto end = std::find(line, page.end(), "```");
  return line == end ? Lines() : Lines(line + 1, end);
}

PageCase CaseOf(const std::string& heading) {
  const Lines page = Page();
  const Lines commands = Block(page, heading, "sh");
  return {commands.empty() ? std::string() : commands.front(), Block(page, heading, "text")};
}

// As a command prompt takes it apart, without the program's name.
std::vector<std::string> ArgumentsOf(const std::string& command) {
  static const std::regex kArgument("\"([^\"]*)\"|(\\S+)");
  std::vector<std::string> arguments;
  for (std::sregex_iterator match(command.begin(), command.end(), kArgument), end; match != end; ++match)
    arguments.push_back((*match)[1].matched ? (*match)[1] : (*match)[2]);
  if (!arguments.empty()) arguments.erase(arguments.begin());
  return arguments;
}

std::string Answer(const std::string& command) {
  Options options;
  int exitCode = 0;
  EXPECT_TRUE(ParseOptions(ArgumentsOf(command), options, exitCode)) << command;
  EXPECT_EQ(options.command, "explain") << command;
  EXPECT_EQ(options.catalogue, "games.xml") << command;
  const ObservedScan scan = ObserveScan(kCatalogue, {});
  if (options.input.find('\\') != std::string::npos)
    return PathExplanationText(ExplainPath(options.input, scan), options.verbose);
  return ExplanationText(ExplainName(scan, options.input), {0, options.verbose});
}

// Each line that the page shows is a line of the answer, and they come in the page's order.
void ExpectWhatThePageShows(const std::string& heading) {
  const PageCase shown = CaseOf(heading);
  ASSERT_FALSE(shown.shown.empty()) << "nothing is shown for: " << heading;
  const std::string answer = Answer(shown.command);
  const Lines lines = LinesOf(answer);
  auto at = lines.begin();
  for (const std::string& line : shown.shown) {
    at = std::find(at, lines.end(), line);
    ASSERT_NE(at, lines.end()) << heading << " doesn't say\n" << line << "\nbut\n" << answer;
    ++at;
  }
}

// ---- The machine

class HostTroubleshooting : public testing::Test {
 protected:
  void Catalogue(const GameList& games) { desktop_.File(kCatalogue, common::CatalogueText(games)); }

  // A Steam library with one game in it, as its manifest tells.
  void Library(const std::string& library, const std::string& id, const std::string& name) {
    desktop_.File(library + "\\steamapps\\appmanifest_" + id + ".acf",
                  desktop::AppManifestText(id, name, name));
  }
  void Libraries(const std::vector<std::string>& libraries) {
    desktop_.String(kSteamKey, "InstallPath", kSteam, View::k64);
    desktop_.File(kSteam + R"(\steamapps\libraryfolders.vdf)", desktop::LibraryFoldersText(libraries));
  }

  Desktop desktop_;
};

// Where the game of this very name is found; empty where it isn't.
std::string FoundAt(const std::string& name) {
  for (const GameExplanation& game : ExplainName(ObserveScan(kCatalogue, {}), name).records) {
    const bool found = game.outcome == Outcome::kFound || game.outcome == Outcome::kEarlier;
    if (game.name == name && found) return game.path;
  }
  return {};
}

// What the check of a catalogue finds in these records.
Lines Codes(const GameList& games) {
  Lines codes;
  for (const host::Finding& finding : host::CheckWholeText(common::CatalogueText(games)).list)
    codes.emplace_back(host::RowOf(finding.check).code);
  return codes;
}

size_t EntriesAt(const std::string& path) {
  const ScanResults entries = ObserveScan(kCatalogue, {}).unique;
  return static_cast<size_t>(std::count_if(entries.begin(), entries.end(),
                                           [&](const ScanResult& entry) { return entry.exePath == path; }));
}

GameSignature Record(const std::string& name, const std::string& exe) {
  GameSignature record;
  record.DisplayName = name;
  record.DefaultExe = exe;
  return record;
}

GameSignature RecordWithKey(const std::string& name, const std::string& exe, const std::string& key,
                            const std::string& value) {
  GameSignature record = Record(name, exe);
  record.RegistryKey = key;
  record.RegistryPathKeyName = value;
  return record;
}

TEST_F(HostTroubleshooting, ThePageHasTheseCasesAndNoOther) {
  EXPECT_THAT(
      Headings(),
      ElementsAre("The wrong program starts", "The game is on a second drive", "The library was moved",
                  "The game's folder was renamed", "The launcher is gone, the games are kept",
                  "The user's name has letters that the code page lacks",
                  "The key is in the other registry view", "The catalogue's elements are out of order",
                  "The game has no icon of its own", "The game is listed twice"));
}

TEST_F(HostTroubleshooting, TheWrongProgramStarts) {
  const std::string key = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Copper Ferry)";
  desktop_.File(R"(C:\Games\Copper Ferry\Launcher.exe)");
  desktop_.File(R"(C:\Games\Copper Ferry\ferry.exe)");
  desktop_.String(key, "Program", R"(C:\Games\Copper Ferry\Launcher.exe)");
  desktop_.String(key, "Folder", R"(C:\Games\Copper Ferry)");
  Catalogue({RecordWithKey("Copper Ferry", "ferry.exe", key, "Program")});
  ExpectWhatThePageShows("The wrong program starts");
  Catalogue({RecordWithKey("Copper Ferry", "ferry.exe", key, "Folder")});
  EXPECT_EQ(FoundAt("Copper Ferry"), R"(C:\Games\Copper Ferry\ferry.exe)");
}

// Wine's drive Z: is the system below, and counts as fixed.
TEST_F(HostTroubleshooting, TheGameIsOnASecondDrive) {
  if (!IsFixedDrive("Z:\\")) GTEST_SKIP() << "there is no fixed drive Z:";
  const std::string key = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Reed Organ)";
  const std::string folder = R"(Z:\tmp\TarnwickTrouble\Reed Organ)";
  desktop_.File(folder + "\\organ.exe");
  desktop_.String(key, "Folder", folder);
  GameSignature record = Record("Reed Organ", "organ.exe");
  record.DefaultFolder = R"(C:\Games\Reed Organ)";
  Catalogue({record});
  ExpectWhatThePageShows("The game is on a second drive");
  record.RegistryKey = key;
  record.RegistryPathKeyName = "Folder";
  Catalogue({record});
  EXPECT_EQ(FoundAt("Reed Organ"), folder + "\\organ.exe");
}

TEST_F(HostTroubleshooting, TheLibraryWasMoved) {
  const std::string game = R"(C:\NewLibrary\steamapps\common\Lantern Tide)";
  desktop_.File(game + "\\tide.exe");
  Library(R"(C:\NewLibrary)", "9770031", "Lantern Tide");
  Libraries({kSteam, R"(C:\OldLibrary)"});
  desktop_.String(kUninstallKey + "Steam App 9770031", "DisplayName", "Lantern Tide", View::k64);
  desktop_.String(kUninstallKey + "Steam App 9770031", "InstallLocation",
                  R"(C:\OldLibrary\steamapps\common\Lantern Tide)", View::k64);
  Catalogue({SteamSignature("9770031", "Lantern Tide", "tide.exe")});
  ExpectWhatThePageShows("The library was moved");
  Libraries({kSteam, R"(C:\NewLibrary)"});
  EXPECT_EQ(FoundAt("Lantern Tide"), game + "\\tide.exe");
}

TEST_F(HostTroubleshooting, TheGamesFolderWasRenamed) {
  const std::string common = kSteam + R"(\steamapps\common\)";
  desktop_.File(common + R"(Winter Orchard (old)\orchard.exe)");
  Library(kSteam, "9770032", "Winter Orchard");
  Libraries({kSteam});
  Catalogue({SteamSignature("9770032", "Winter Orchard", "orchard.exe")});
  ExpectWhatThePageShows("The game's folder was renamed");
  desktop_.File(common + R"(Winter Orchard\orchard.exe)");
  EXPECT_EQ(FoundAt("Winter Orchard"), common + R"(Winter Orchard\orchard.exe)");
}

TEST_F(HostTroubleshooting, TheLauncherIsGone) {
  const std::string game = R"(C:\SteamLibrary\steamapps\common\Marsh Signal\marsh.exe)";
  desktop_.File(game);
  Library(R"(C:\SteamLibrary)", "9770033", "Marsh Signal");
  const GameSignature ofSteam = SteamSignature("9770033", "Marsh Signal", "marsh.exe");
  Catalogue({ofSteam});
  ExpectWhatThePageShows("The launcher is gone, the games are kept");
  GameSignature direct = Record("Marsh Signal", "marsh.exe");
  direct.SourceKind = kSourceDirect;
  direct.DefaultFolder = R"(C:\SteamLibrary\steamapps\common\Marsh Signal)";
  Catalogue({ofSteam, direct});
  EXPECT_EQ(FoundAt("Marsh Signal"), game);
}

TEST_F(HostTroubleshooting, TheUsersNameHasLettersThatTheCodePageLacks) {
  if (GetACP() != 1252) GTEST_SKIP() << "the ANSI page here is " << GetACP();
  const std::string home = R"(C:\Users\Ирина)";
  const std::string game = home + R"(\Games\Paper Lagoon\lagoon.exe)";
  desktop_.File(game);
  desktop_.String(kSteamKey, "InstallPath", home + R"(\Steam)", View::k64);
  desktop_.File(home + R"(\Steam\userdata\1\config\shortcuts.vdf)",
                desktop::ShortcutsBytes({{"Paper Lagoon", "\"" + game + "\"", {}}}));
  GameSignature record = Record("Paper Lagoon", "lagoon.exe");
  record.DefaultFolder = R"(C:\Games\Paper Lagoon)";
  Catalogue({record});
  ExpectWhatThePageShows("The user's name has letters that the code page lacks");
  record.DefaultFolder = R"(%USERPROFILE%\Games\Paper Lagoon)";
  Catalogue({record});
  EXPECT_EQ(FoundAt("Paper Lagoon"), game);
}

TEST_F(HostTroubleshooting, TheKeyIsInTheOtherView) {
  const std::string key = R"(HKEY_LOCAL_MACHINE\SOFTWARE\EA Games\Tin Paddock)";
  const std::string game = R"(C:\Games\Tin Paddock\paddock.exe)";
  const std::string guid = "{7A11D3C0-0000-4000-8000-00000000C007}";
  desktop_.File(game);
  desktop_.String(key, "Product GUID", guid, View::k64);
  desktop_.String(key, "Install Dir", R"(C:\Games\Tin Paddock)", View::k64);
  desktop_.String(kUninstallKey + guid, "DisplayName", "Tin Paddock", View::k64);
  desktop_.String(kUninstallKey + guid, "DisplayIcon", game, View::k64);
  desktop_.String(kUninstallKey + "TarnwickTrouble", "DisplayName", "Another", View::k32);
  GameSignature record = Record("Tin Paddock", "paddock.exe");
  record.SourceKind = kSourceEa;
  Catalogue({record});
  ExpectWhatThePageShows("The key is in the other registry view");
  record.RegistryKey = key;
  record.RegistryPathKeyName = "Install Dir";
  Catalogue({record});
  EXPECT_EQ(FoundAt("Tin Paddock"), game);
}

TEST_F(HostTroubleshooting, TheElementsAreOutOfOrder) {
  const auto catalogue = [this](const std::string& executables) {
    desktop_.File(kCatalogue, "<Games>\n<GameSignature><DisplayName>Slate Harbour</DisplayName>" +
                                  executables +
                                  "<DefaultFolder>C:\\Games\\Slate Harbour</DefaultFolder>"
                                  "</GameSignature>\n</Games>\n");
  };
  const std::string plain = "<DefaultExe>slate.exe</DefaultExe>";
  const std::string longer = "<DefaultExe32>slate32.exe</DefaultExe32>";
  desktop_.File(R"(C:\Games\Slate Harbour\slate.exe)");
  catalogue(longer + plain);
  ExpectWhatThePageShows("The catalogue's elements are out of order");
  catalogue(plain + longer);
  EXPECT_EQ(FoundAt("Slate Harbour"), R"(C:\Games\Slate Harbour\slate.exe)");
}

TEST_F(HostTroubleshooting, TheGameHasNoIcon) {
  const std::string key = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Quiet Anvil)";
  const std::string folder = R"(C:\Games\Quiet Anvil)";
  desktop_.Executable(folder + R"(\bin\anvil.exe)");
  desktop_.Executable(folder + R"(\start.exe)", {{{{{32, 0x3366CC}, {256, 0x3366CC}}}}, {}, 0});
  desktop_.String(key, "Folder", folder);
  GameSignature record = RecordWithKey("Quiet Anvil", R"(bin\anvil.exe)", key, "Folder");
  Catalogue({record});
  ExpectWhatThePageShows("The game has no icon of its own");
  record.DefaultExe = "start.exe";
  Catalogue({record});
  EXPECT_THAT(Answer(R"(tarnwick explain "C:\Games\Quiet Anvil\start.exe" games.xml)"),
              HasSubstr("  icon: C:\\Games\\Quiet Anvil\\start.exe, by PrivateExtractIconsW"));
}

TEST_F(HostTroubleshooting, TheGameIsListedTwice) {
  const std::string game = kSteam + R"(\steamapps\common\Glass Heron\heron.exe)";
  const std::string folder = kSteam + R"(\steamapps\common\Glass Heron)";
  const std::string key = kUninstallKey + "Steam App 9770034";
  desktop_.File(game);
  Libraries({kSteam});
  desktop_.String(key, "DisplayName", "Glass Heron", View::k64);
  desktop_.String(key, "InstallLocation", folder, View::k64);
  desktop_.File(kSteam + R"(\appcache\appinfo.vdf)",
                desktop::AppInfoBytes(41, {{9770034, "Glass Heron", "game", "Glass Heron", {"heron.exe"}}}));
  GameSignature record = RecordWithKey("Glass Heron", "heron.exe", key, "InstallLocation");
  Catalogue({record});
  EXPECT_EQ(EntriesAt(game), 2u);
  ExpectWhatThePageShows("The game is listed twice");
  record.LaunchUrl = "steam://run/9770034";
  Catalogue({record});
  EXPECT_EQ(EntriesAt(game), 1u);
  EXPECT_THAT(Codes({record}), ElementsAre("TC113"));
  Catalogue({SteamSignature("9770034", "Glass Heron", "heron.exe")});
  EXPECT_EQ(EntriesAt(game), 1u);
  EXPECT_THAT(Codes({SteamSignature("9770034", "Glass Heron", "heron.exe")}), testing::IsEmpty());
}

}  // namespace
}  // namespace tarnwick
