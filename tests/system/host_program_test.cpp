// tarnwick.exe as a person or a script runs it.
#include "common/wide_text.h"
#include "desktop/desktop.h"
#include "foundation/owner.h"
#include "support/file_bytes.h"
#include "support/process.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>

namespace tarnwick::tests {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kProgram = "tarnwick.exe";
const std::string kFolder = R"(C:\TarnwickTest\Host)";
const std::string kCatalogue = kFolder + R"(\Каталог 游戏.xml)";

// Nobody else can open the file while the handle lives.
Handle Locked(const std::string& path) {
  const HANDLE file =
      CreateFileW(common::Wide(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(file, INVALID_HANDLE_VALUE) << path;
  return Handle(file);
}

// One game that the registry leads to.
desktop::Desktop OneGame() {
  desktop::Desktop world;
  world.Executable(kFolder + R"(\Ночной Рейс\run.exe)");
  world.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickHostTest)", "InstallLocation",
               "\"" + kFolder + R"(\Ночной Рейс\run.exe")");
  world.File(kCatalogue,
             "<A><GameSignature><DisplayName>Ночной Рейс</DisplayName>"
             "<RegistryKey>HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickHostTest</RegistryKey>"
             "<DefaultExe>run.exe</DefaultExe></GameSignature></A>");
  return world;
}

TEST(HostProgram, HelpAndVersionEndWithCode0) {
  const ProgramResult help = RunProgram(kProgram, {"--help"});
  EXPECT_EQ(help.exitCode, 0u);
  for (const char* command : {"scan", "apps", "find", "details", "watch", "catalogue"}) {
    EXPECT_THAT(help.output, HasSubstr(command));
  }
  const ProgramResult version = RunProgram(kProgram, {"--version"});
  EXPECT_EQ(version.exitCode, 0u);
  EXPECT_THAT(version.output, StartsWith("tarnwick "));
}

TEST(HostProgram, NamesTheLibraryThatIsMissingBesideIt) {
  const std::string alone = kFolder + R"(\allein Ä\tarnwick.exe)";
  desktop::Desktop world;
  world.File(alone, ReadBytes(TestProgramFolder() + kProgram));
  const ProgramResult result = RunProgram(alone, {"apps"});
  EXPECT_EQ(result.exitCode, 1u);
  EXPECT_EQ(result.output, "");
  EXPECT_THAT(result.errors,
              StartsWith("tarnwick: " + kFolder + R"(\allein Ä\Tarnwick.dll: there is no such file)"));
  EXPECT_EQ(RunProgram(alone, {"--version"}).exitCode, 0u) << "what doesn't ask the library needs none";
}

TEST(HostProgram, AWrongArgumentIsExplainedAndEndsWithCode2) {
  const std::vector<std::vector<std::string>> wrong = {{},
                                                       {"bogus"},
                                                       {"scan", "--format", "pdf"},
                                                       {"scan", "--no-such"},
                                                       {"find"},
                                                       {"apps", "--page", "0"},
                                                       {"apps", "--all", "--page", "2"},
                                                       {"catalogue"},
                                                       {"catalogue", "encipher", "x"}};
  for (const std::vector<std::string>& arguments : wrong) {
    const ProgramResult result = RunProgram(kProgram, arguments);
    EXPECT_EQ(result.exitCode, 2u) << result.errors;
    EXPECT_THAT(result.errors, Not(IsEmpty()));
    EXPECT_THAT(result.output, IsEmpty());
  }
}

TEST(HostProgram, AMissingCatalogueIsNamedAndEndsWithCode1) {
  const ProgramResult result = RunProgram(kProgram, {"scan", "C:\\no such\\catalogue.xml"});
  EXPECT_EQ(result.exitCode, 1u);
  EXPECT_THAT(result.errors, HasSubstr("C:\\no such\\catalogue.xml"));
}

// A folder of catalogues, of which MasterGameList.xml, the library's own choice there, holds the game.
desktop::Desktop CatalogueFolder(const std::string& name, const std::string& bytes) {
  desktop::Desktop world = OneGame();
  world.File(kFolder + R"(\here\MasterGameList.xml)", ReadBytes(kCatalogue));
  world.File(kFolder + R"(\here\)" + name, bytes);
  return world;
}

TEST(HostProgram, ACatalogueThatWasNamedAndIsMissingIsNotReplacedByTheFoldersOwn) {
  const desktop::Desktop world = CatalogueFolder("other.xml", "<A/>");
  const ProgramResult result = RunProgram(kProgram, {"scan", "missing.xml", "--log"}, kFolder + R"(\here)");
  EXPECT_EQ(result.exitCode, 1u);
  EXPECT_THAT(result.output, IsEmpty());
  // One line, and no scan.
  EXPECT_EQ(result.errors, "tarnwick: missing.xml does not exist; check the path\n");
}

TEST(HostProgram, EveryCatalogueThatIsNoneIsToldApartBeforeAScan) {
  const std::pair<std::string, const char*> kinds[] = {
      {"", " is empty"},
      {std::string("\xFF\xFE<\0", 4), " is UTF-16"},
      {std::string("\0<\0A", 4), " is UTF-16"},
      {std::string(64, '\x9D'), " looks enciphered, but can't be deciphered"},
      {"<html></html>", " is not a catalogue"}};
  for (const auto& [bytes, fault] : kinds) {
    const desktop::Desktop world = CatalogueFolder("named.xml", bytes);
    const ProgramResult result = RunProgram(kProgram, {"scan", "named.xml", "--log"}, kFolder + R"(\here)");
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.errors, StartsWith(std::string("tarnwick: named.xml") + fault));
    EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
  }
}

TEST(HostProgram, AFolderOrALockedFileIsNoCatalogue) {
  const desktop::Desktop world = OneGame();
  EXPECT_THAT(RunProgram(kProgram, {"scan", kFolder}).errors,
              StartsWith("tarnwick: " + kFolder + " is a folder"));
  const Handle lock = Locked(kCatalogue);
  const ProgramResult result = RunProgram(kProgram, {"scan", kCatalogue});
  EXPECT_EQ(result.exitCode, 1u);
  EXPECT_THAT(result.errors, StartsWith("tarnwick: " + kCatalogue + " is locked by another program"));
}

TEST(HostProgram, WithoutANamedCatalogueTheFoldersOwnIsJudgedAlike) {
  const desktop::Desktop world = CatalogueFolder("MasterGameList_decrypted.xml", "");
  EXPECT_EQ(RunProgram(kProgram, {"scan"}, kFolder + R"(\here)").errors,
            "tarnwick: MasterGameList_decrypted.xml is empty; get the catalogue anew\n");
}

TEST(HostProgram, RecordsThatTheLibraryDoesNotReadGiveAWarningAndTheScanGoesOn) {
  const desktop::Desktop world = CatalogueFolder("open.xml",
                                                 "<GameSignature><DisplayName>x</DisplayName></GameSignature>"
                                                 "<GameSignature>");
  const ProgramResult result =
      RunProgram(kProgram, {"scan", "open.xml", "--format", "json"}, kFolder + R"(\here)");
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.errors, "tarnwick: open.xml opens 2 records, closes 1; the library read 1\n");
  EXPECT_EQ(result.output, "[]\n");
}

// A scan's lines with the one thing in them that changes, the time, taken out.
std::string Timeless(const std::string& lines) {
  return std::regex_replace(lines, std::regex(R"("time":"[^"]*")"), "\"time\":\"\"");
}

TEST(HostProgram, ScanWritesLinesAndCommaSeparatedValues) {
  const desktop::Desktop world = OneGame();
  const std::string game =
      R"({"name":"Ночной Рейс","loc":"C:\\TarnwickTest\\Host\\Ночной Рейс\\run.exe","icon":"",)"
      R"("launchUrl":"","exeName":"run.exe","launcher":"Installed","foundBy":"Default Registry Scan")";
  const std::string lines =
      RunProgram(kProgram, {"scan", kCatalogue, "--format", "ndjson", "--machine", "Стол 7"}).output;
  const std::string origin = R"("form":1,"time":"","machine":"Стол 7")";
  EXPECT_THAT(Timeless(lines), StartsWith(game + R"(,"sizeKB":null,"kind":"game",)" + origin + "}\n" +
                                          R"({"kind":"scan",)" + origin + R"(,"lines":1,"program":")"));
  EXPECT_EQ(RunProgram(kProgram, {"scan", kCatalogue, "--format", "json", "--no-icons"}).output,
            "[" + game + "}]\n");
  EXPECT_EQ(RunProgram(kProgram, {"scan", kCatalogue, "--format", "csv", "--no-icons"}).output,
            "name,loc,icon,launchUrl,exeName,launcher,foundBy\r\n"
            "Ночной Рейс,C:\\TarnwickTest\\Host\\Ночной Рейс\\run.exe,,,run.exe,Installed,Default Registry "
            "Scan\r\n");
}

TEST(HostProgram, ASteamGamesSizeIsTheManifests) {
  const std::string library = kFolder + R"(\Библиотека)";
  const std::string program = library + R"(\steamapps\common\Wren\wren.exe)";
  desktop::Desktop world;
  world.Executable(program);
  world.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickHostTest)", "InstallLocation", program);
  world.File(library + R"(\steamapps\appmanifest_70.acf)",
             "\"AppState\"\n{\n\t\"SizeOnDisk\"\t\t\"4097\"\n}\n");
  world.File(kCatalogue,
             "<A><GameSignature><DisplayName>Wren</DisplayName>"
             "<RegistryKey>HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickHostTest</RegistryKey>"
             "<DefaultExe>wren.exe</DefaultExe><LaunchUrl>steam://run/70</LaunchUrl></GameSignature></A>");
  EXPECT_THAT(RunProgram(kProgram, {"scan", kCatalogue, "--format", "ndjson"}).output,
              HasSubstr(R"("sizeKB":5,"kind":"game")"));
}

TEST(HostProgram, DiffAnswersAsDiffDoes) {
  desktop::Desktop world = OneGame();
  const std::string old = kFolder + R"(\old.json)";
  const std::string now = kFolder + R"(\now.ndjson)";
  world.File(old, R"([{"name":"Wren","loc":"C:\\wren.exe","launchUrl":"","launcher":"GOG"},)"
                  R"({"name":"Ночной Рейс","loc":"C:\\run.exe","launchUrl":"","launcher":"Installed"}])");
  world.File(now, RunProgram(kProgram, {"scan", kCatalogue, "--format", "ndjson"}).output);
  const ProgramResult differ = RunProgram(kProgram, {"diff", old, now});
  EXPECT_EQ(differ.exitCode, 1u);
  EXPECT_EQ(differ.output, "- Wren (GOG)  C:\\wren.exe\n~ Ночной Рейс (Installed)  C:\\run.exe -> " +
                               kFolder + "\\Ночной Рейс\\run.exe\n");
  EXPECT_EQ(differ.errors, "");
  const ProgramResult same = RunProgram(kProgram, {"diff", now, now});
  EXPECT_EQ(same.exitCode, 0u);
  EXPECT_EQ(same.output, "");
}

TEST(HostProgram, ADiffOfWhatCanNotBeReadEndsWithCode2AndThePlace) {
  desktop::Desktop world = OneGame();
  const std::string cut = kFolder + R"(\cut.json)";
  world.File(cut, "[\n{\"name\":");
  const ProgramResult broken = RunProgram(kProgram, {"diff", cut, cut});
  EXPECT_EQ(broken.exitCode, 2u);
  EXPECT_EQ(broken.output, "");
  EXPECT_EQ(broken.errors, "tarnwick: " + cut + ":2:9: the text ends too early; it was cut\n");
  const ProgramResult missing = RunProgram(kProgram, {"diff", cut + "x", cut});
  EXPECT_EQ(missing.exitCode, 2u);
  EXPECT_EQ(missing.errors, "tarnwick: " + cut + "x does not exist; check the path\n");
}

TEST(HostProgram, ADiffOfTwoMachinesSaysSo) {
  desktop::Desktop world = OneGame();
  for (const char* machine : {"one", "two"})
    world.File(kFolder + "\\" + machine,
               RunProgram(kProgram, {"scan", kCatalogue, "--format", "ndjson", "--machine", machine}).output);
  const ProgramResult result = RunProgram(kProgram, {"diff", kFolder + "\\one", kFolder + "\\two"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.errors, "tarnwick: the scans are of two machines, one and two\n");
}

TEST(HostProgram, LaunchersThatAreRecognisedAndNotReadAreNamedUnderTheTable) {
  desktop::Desktop world = OneGame();
  EXPECT_THAT(RunProgram(kProgram, {"scan", kCatalogue}).output, Not(HasSubstr("itch.io")));
  world.File(common::Narrow(_wgetenv(L"APPDATA")) + R"(\itch\db\butler.db)");
  const ProgramResult table = RunProgram(kProgram, {"scan", kCatalogue});
  EXPECT_THAT(table.output,
              EndsWith("itch.io is here: Tarnwick recognises it, but reads no games from it.\n"));
  EXPECT_THAT(table.output, Not(HasSubstr("Twitch")));
  EXPECT_THAT(RunProgram(kProgram, {"scan", kCatalogue, "--format", "csv"}).output,
              Not(HasSubstr("itch.io")));
}

TEST(HostProgram, ScanPrintsATableInUtf8WithTheStrategyFromTheLog) {
  const desktop::Desktop world = OneGame();
  const ProgramResult result = RunProgram(kProgram, {"scan", kCatalogue});
  EXPECT_EQ(result.exitCode, 0u) << result.errors;
  EXPECT_THAT(result.output, HasSubstr("Ночной Рейс"));
  EXPECT_THAT(result.output, HasSubstr("Default Registry Scan"));
  EXPECT_THAT(result.output, HasSubstr(R"(C:\TarnwickTest\Host\Ночной Рейс\run.exe)"));
  EXPECT_THAT(result.output, Not(HasSubstr("\r")));
}

TEST(HostProgram, ScanPrintsTheLibrarysJsonAndWhoFoundEachGame) {
  const desktop::Desktop world = OneGame();
  const ProgramResult result = RunProgram(kProgram, {"scan", kCatalogue, "--format", "json"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_THAT(result.output,
              StartsWith(R"([{"name":"Ночной Рейс","loc":"C:\\TarnwickTest\\Host\\Ночной Рейс\\run.exe")"));
  EXPECT_THAT(
      result.output,
      EndsWith(
          "\"exeName\":\"run.exe\",\"launcher\":\"Installed\",\"foundBy\":\"Default Registry Scan\"}]\n"));
}

TEST(HostProgram, ScanWithoutACatalogueLooksInTheCurrentFolder) {
  desktop::Desktop world = OneGame();
  world.File(kFolder + R"(\here\MasterGameList.xml)",
             "<GameSignature><DisplayName>x</DisplayName></GameSignature>");
  const ProgramResult result = RunProgram(kProgram, {"scan"}, kFolder + R"(\here)");
  EXPECT_EQ(result.exitCode, 0u) << result.errors;
}

TEST(HostProgram, ScanWritesAPageToAFile) {
  const desktop::Desktop world = OneGame();
  desktop::Desktop made;
  made.Folder(kFolder + R"(\out)");
  const std::string page = kFolder + R"(\out\page.html)";
  const ProgramResult result = RunProgram(kProgram, {"scan", kCatalogue, "--format", "html", "-o", page});
  EXPECT_EQ(result.exitCode, 0u) << result.errors;
  EXPECT_THAT(result.output, IsEmpty());
  const std::string text = ReadBytes(page);
  EXPECT_THAT(text, StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(text, HasSubstr("\"name\":\"Ночной Рейс\""));
  std::remove(page.c_str());
}

TEST(HostProgram, AFileThatCanNotBeWrittenIsNamed) {
  const desktop::Desktop world = OneGame();
  const ProgramResult result = RunProgram(kProgram, {"scan", kCatalogue, "-o", "C:\\no such folder\\x.txt"});
  EXPECT_EQ(result.exitCode, 1u);
  EXPECT_THAT(result.errors, HasSubstr("C:\\no such folder\\x.txt"));
}

TEST(HostProgram, TheLogGoesToTheStandardErrorWhenAskedFor) {
  const desktop::Desktop world = OneGame();
  const ProgramResult quiet = RunProgram(kProgram, {"scan", kCatalogue});
  EXPECT_THAT(quiet.errors, Not(HasSubstr("START")));
  const ProgramResult loud = RunProgram(kProgram, {"scan", kCatalogue, "--log"});
  EXPECT_THAT(loud.errors, HasSubstr("IA_RunMultiPlatformGameScanJson START\n"));
  EXPECT_THAT(loud.errors, HasSubstr("Strategy [Steam Games Scan] finished. Found: 0\n"));
}

TEST(HostProgram, ACatalogueGoesThroughEncipherAndDecipherUnchanged) {
  const desktop::Desktop world = OneGame();
  desktop::Desktop made;
  made.Folder(kFolder + R"(\out)");
  const std::string cipher = kFolder + R"(\out\cipher.bin)";
  const std::string plain = kFolder + R"(\out\plain.xml)";
  EXPECT_EQ(RunProgram(kProgram, {"catalogue", "encipher", kCatalogue, "-o", cipher}).exitCode, 0u);
  EXPECT_EQ(RunProgram(kProgram, {"catalogue", "decipher", cipher, "-o", plain}).exitCode, 0u);
  EXPECT_NE(ReadBytes(cipher).substr(0, 1), "<");
  EXPECT_THAT(ReadBytes(plain), HasSubstr("<DisplayName>Ночной Рейс</DisplayName>"));
  // The library reads the enciphered form by itself.
  EXPECT_THAT(RunProgram(kProgram, {"scan", cipher}).output, HasSubstr("Ночной Рейс"));
  const ProgramResult spoilt = RunProgram(kProgram, {"catalogue", "decipher", plain, "-o", cipher});
  EXPECT_EQ(spoilt.exitCode, 1u);
  EXPECT_THAT(spoilt.errors, HasSubstr(plain));
  std::remove(cipher.c_str());
  std::remove(plain.c_str());
}

// What stands in the output beforehand must stand there afterwards.
void ExpectRefused(const std::string& step, const std::string& input, const std::string& output,
                   const std::string& fault) {
  const std::string before = ReadBytes(output);
  const ProgramResult result = RunProgram(kProgram, {"catalogue", step, input, "-o", output});
  EXPECT_EQ(result.exitCode, 1u) << step << " " << input;
  EXPECT_THAT(result.errors, HasSubstr(fault));
  EXPECT_EQ(result.errors.find('\n'), result.errors.size() - 1) << result.errors;
  EXPECT_EQ(ReadBytes(output), before);
}

TEST(HostProgram, EncipherAndDecipherRefuseWhatTheyAreNotFor) {
  desktop::Desktop world = OneGame();
  const std::string cipher = kFolder + R"(\cipher.bin)";
  world.File(cipher, "");
  ASSERT_EQ(RunProgram(kProgram, {"catalogue", "encipher", kCatalogue, "-o", cipher}).exitCode, 0u);
  const std::string output = kFolder + R"(\output.xml)";
  const std::string other = kFolder + R"(\other.xml)";
  world.File(output, "precious");
  world.File(other, "<html></html>");
  ExpectRefused("encipher", other, output, "is not a catalogue");
  ExpectRefused("encipher", cipher, output, "is enciphered already");
  ExpectRefused("encipher", kFolder + R"(\none.xml)", output, "none.xml does not exist");
  ExpectRefused("encipher", kCatalogue, kCatalogue, "is the file that is read");
  ExpectRefused("encipher", kCatalogue, "c:/tarnwicktest/HOST/../host/Каталог 游戏.xml",
                "is the file that is read");
  ExpectRefused("decipher", kCatalogue, output, "is not enciphered");
  ExpectRefused("decipher", other, output, "is not a catalogue");
  ExpectRefused("decipher", cipher, cipher, "is the file that is read");
  ExpectRefused("decipher", cipher, "c:/tarnwicktest/host/CIPHER.BIN", "is the file that is read");
}

TEST(HostProgram, ARefusedCatalogueLeavesNoOutputBehind) {
  desktop::Desktop world;
  const std::string output = kFolder + R"(\new.xml)";
  world.File(kFolder + R"(\other.xml)", "<html></html>");
  EXPECT_EQ(RunProgram(kProgram, {"catalogue", "encipher", kFolder + R"(\other.xml)", "-o", output}).exitCode,
            1u);
  EXPECT_FALSE(std::ifstream(output).is_open());
  std::remove(output.c_str());
}

// An application with an icon of its own in the Uninstall key.
desktop::Desktop OneApplication() {
  desktop::Desktop world;
  const std::string key = kUninstallKey + "TarnwickHostTest";
  world.Executable(kFolder + R"(\Werkzeug Ä\tool.exe)", {{{{{32, 0x00FF00}}}}, {}, 0});
  world.String(key, "DisplayName", "Werkzeug Ä");
  world.String(key, "Publisher", "Hostmacher");
  world.String(key, "DisplayVersion", "1.2.3");
  world.String(key, "DisplayIcon", kFolder + R"(\Werkzeug Ä\tool.exe,0)");
  world.String(key, "InstallLocation", kFolder + R"(\Werkzeug Ä)");
  return world;
}

TEST(HostProgram, AppsListsFiltersAndPages) {
  const desktop::Desktop world = OneApplication();
  const ProgramResult table = RunProgram(kProgram, {"apps", "--filter", "hostMACHER"});
  EXPECT_EQ(table.exitCode, 0u) << table.errors;
  EXPECT_THAT(table.output, HasSubstr("Werkzeug Ä"));
  EXPECT_THAT(table.output, HasSubstr("\n1 application.\n"));
  EXPECT_THAT(RunProgram(kProgram, {"apps", "--all", "--format", "json"}).output,
              HasSubstr("\"exeName\":\"tool.exe\""));
  EXPECT_THAT(
      RunProgram(kProgram, {"apps", "--filter", "hostmacher", "--page", "2", "--format", "json"}).output,
      "[]\n");
  EXPECT_THAT(RunProgram(kProgram, {"apps", "--all", "--format", "html"}).output, HasSubstr("Werkzeug Ä"));
  EXPECT_THAT(RunProgram(kProgram, {"apps", "--filter", "no such application"}).output,
              "No applications found.\n");
}

// Applications named "Serie 01" and so on, of one publisher; the last has no executable.
desktop::Desktop Applications(int count) {
  desktop::Desktop world;
  world.Executable(kFolder + R"(\tool.exe)");
  for (int number = 1; number <= count; ++number) {
    const std::string two = (number < 10 ? "0" : "") + std::to_string(number);
    const std::string key =
        R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\TarnwickSeries)" + two;
    world.String(key, "DisplayName", "Serie " + two);
    world.String(key, "Publisher", "Serienmacher");
    if (number < count) world.String(key, "DisplayIcon", kFolder + R"(\tool.exe)");
  }
  return world;
}

size_t CountOf(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST(HostProgram, AppsTellOfThoseThatAreNotShown) {
  const desktop::Desktop world = Applications(42);
  const std::vector<std::string> apps = {"apps", "--filter", "serienmacher"};
  const auto run = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments = apps;
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunProgram(kProgram, arguments);
  };
  EXPECT_THAT(run({}).output, EndsWith("\n20 of 41 applications (page 1 of 3; --all shows all).\n"));
  EXPECT_THAT(run({"--page", "3"}).output,
              EndsWith("\n1 of 41 applications (page 3 of 3; --all shows all).\n"));
  EXPECT_THAT(run({"--all"}).output, EndsWith("\n41 applications.\n"));
  EXPECT_THAT(run({"--format", "json"}).output, Not(HasSubstr(" of 41")));
  // The library's own line of a call stands once, though more calls were made to count.
  const std::string log = run({"--log"}).errors;
  EXPECT_EQ(CountOf(log, "IA_GetAppsJson START"), 1u) << log;
  EXPECT_THAT(RunProgram(kProgram, {"apps"}).output,
              AnyOf(EndsWith("\n1 more has no executable and is not shown.\n"),
                    EndsWith(" more have no executable and are not shown.\n")));
}

TEST(HostProgram, ThePageOfApplicationsShowsAllUnlessAPageWasAskedFor) {
  const desktop::Desktop world = Applications(23);
  const std::vector<std::string> all = {"apps", "--filter", "serienmacher", "--format", "html"};
  EXPECT_EQ(CountOf(RunProgram(kProgram, all).output, "\"Serie "), 22u);
  std::vector<std::string> page = all;
  page.insert(page.end(), {"--page", "1"});
  EXPECT_EQ(CountOf(RunProgram(kProgram, page).output, "\"Serie "), 20u);
}

TEST(HostProgram, APageBehindTheEndIsExplainedInEveryFormat) {
  const desktop::Desktop world = Applications(42);
  const std::string line = "tarnwick: there is no page 9: 41 applications make 3 pages of 20\n";
  const std::pair<const char*, const char*> empty[] = {
      {"json", "[]\n"}, {"csv", "name,publisher,version,loc,date,sizeKB,icon\r\n"}};
  for (const auto& [format, output] : empty) {
    const ProgramResult result =
        RunProgram(kProgram, {"apps", "--filter", "serienmacher", "--page", "9", "--format", format});
    EXPECT_EQ(result.exitCode, 0u) << format;
    EXPECT_EQ(result.errors, line) << format;
    EXPECT_EQ(result.output, output) << format;
  }
  const ProgramResult lines =
      RunProgram(kProgram, {"apps", "--filter", "serienmacher", "--page", "9", "--format", "ndjson"});
  EXPECT_EQ(lines.errors, line);
  EXPECT_THAT(lines.output, AllOf(StartsWith(R"({"kind":"apps",)"), HasSubstr(R"(,"lines":0,)")));
  const ProgramResult page =
      RunProgram(kProgram, {"apps", "--filter", "serienmacher", "--page", "9", "--format", "html"});
  EXPECT_EQ(page.exitCode, 0u);
  EXPECT_EQ(page.errors, line);
  const ProgramResult table = RunProgram(kProgram, {"apps", "--filter", "serienmacher", "--page", "9"});
  EXPECT_EQ(table.exitCode, 1u);
  EXPECT_EQ(table.errors, line);
  EXPECT_THAT(table.output, IsEmpty());
}

TEST(HostProgram, AppsAndFindWriteLinesAndCommaSeparatedValues) {
  desktop::Desktop world = OneApplication();
  world.File(kFolder + R"(\request.json)", R"([{"name":"=1+1, \u00e9","exeName":"tool.exe"}])");
  const std::string loc = R"(C:\TarnwickTest\Host\Werkzeug Ä\tool.exe)";
  const std::vector<std::string> apps = {"apps", "--filter", "hostmacher", "--no-icons", "--format"};
  const auto run = [](std::vector<std::string> arguments, const std::vector<std::string>& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunProgram(kProgram, arguments).output;
  };
  EXPECT_EQ(run(apps, {"csv"}),
            "name,publisher,version,loc,date,sizeKB,icon\r\n"
            "Werkzeug Ä,Hostmacher,1.2.3," +
                loc + ",,0,\r\n");
  EXPECT_EQ(run(apps, {"csv", "--all"}),
            "name,publisher,version,loc,exeName,date,sizeKB,icon\r\n"
            "Werkzeug Ä,Hostmacher,1.2.3," +
                loc + ",tool.exe,,0,\r\n");
  EXPECT_THAT(
      run(apps, {"ndjson"}),
      StartsWith(R"({"name":"Werkzeug Ä","publisher":"Hostmacher","version":"1.2.3",)"
                 R"("loc":"C:\\TarnwickTest\\Host\\Werkzeug Ä\\tool.exe","date":"","sizeKB":0,"icon":"",)"
                 R"("kind":"application","form":1,)"));
  EXPECT_THAT(run({"find", kFolder + R"(\request.json)", "--no-icons", "--format"}, {"csv"}),
              EndsWith("\r\n\"'=1+1, \\u00e9\",Hostmacher,1.2.3," + loc + ",,0,\r\n"));
}

TEST(HostProgram, FindTellsOfEveryEntryThatCameToNothing) {
  desktop::Desktop world = OneApplication();
  const std::string request = kFolder + R"(\request.json)";
  world.File(request,
             R"([{"name":"Mine","exeName":"tool.exe"},{"name":"Нет","exeName":"none.exe"},{"name":"B"}])");
  const ProgramResult some = RunProgram(kProgram, {"find", request, "--log"});
  EXPECT_EQ(some.exitCode, 0u);
  EXPECT_THAT(some.errors,
              HasSubstr("tarnwick: entry 2 (\"Нет\", none.exe): no installed application has it\n"));
  EXPECT_THAT(some.errors,
              HasSubstr("tarnwick: entry 3 (\"B\") has no exeName, so the library ignores it\n"));
  EXPECT_THAT(some.errors, Not(HasSubstr("IA_FindGamesJson")));
  EXPECT_THAT(some.output, EndsWith("\n1 of 3 entries found.\n"));
  world.File(request, R"([{"exeName":"none.exe"}])");
  const ProgramResult none = RunProgram(kProgram, {"find", request, "--format", "json"});
  EXPECT_EQ(none.exitCode, 1u);
  EXPECT_EQ(none.output, "[]\n");
  EXPECT_EQ(none.errors, "tarnwick: entry 1 (none.exe): no installed application has it\n");
}

TEST(HostProgram, FindSaysWhyARequestCanNotBeRead) {
  desktop::Desktop world;
  const std::string request = kFolder + R"(\request.json)";
  for (const auto& [bytes, fault] : {std::pair<std::string, std::string>{"", " is empty"},
                                     {std::string("[\0{\0}\0]\0", 8), " is UTF-16"},
                                     {"[]", " holds no object"}}) {
    world.File(request, bytes);
    const ProgramResult result = RunProgram(kProgram, {"find", request, "--format", "json"});
    EXPECT_EQ(result.exitCode, 1u);
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(result.errors, StartsWith("tarnwick: " + request + fault));
  }
  const Handle lock = Locked(request);
  EXPECT_THAT(RunProgram(kProgram, {"find", request}).errors, HasSubstr(" is locked by another program"));
}

TEST(HostProgram, FindAnswersARequestFile) {
  desktop::Desktop world = OneApplication();
  world.File(kFolder + R"(\request.json)", R"([{"name":"Mine","exeName":"tool.exe","exePath":""}])");
  world.File(kFolder + R"(\empty.json)", "");
  const ProgramResult found = RunProgram(kProgram, {"find", kFolder + R"(\request.json)"});
  EXPECT_EQ(found.exitCode, 0u) << found.errors;
  EXPECT_THAT(found.output, HasSubstr("Mine"));
  EXPECT_THAT(RunProgram(kProgram, {"find", kFolder + R"(\missing.json)"}).errors, HasSubstr("missing.json"));
  EXPECT_EQ(RunProgram(kProgram, {"find", kFolder + R"(\empty.json)"}).exitCode, 1u);
}

TEST(HostProgram, DetailsTellOfOneExecutable) {
  const desktop::Desktop world = OneApplication();
  const ProgramResult details = RunProgram(kProgram, {"details", kFolder + R"(\Werkzeug Ä\tool.exe)"});
  EXPECT_EQ(details.exitCode, 0u) << details.errors;
  EXPECT_THAT(details.output, HasSubstr("tool.exe"));
  EXPECT_THAT(details.output, HasSubstr("PNG"));
  EXPECT_THAT(
      RunProgram(kProgram, {"details", kFolder + R"(\Werkzeug Ä\tool.exe)", "--format", "json"}).output,
      StartsWith("{\"name\":\"tool\",\"ico\":\"data:image/png;base64,"));
  const ProgramResult missing = RunProgram(kProgram, {"details", "C:\\nothing.exe"});
  EXPECT_EQ(missing.exitCode, 1u);
  EXPECT_THAT(missing.errors, HasSubstr("C:\\nothing.exe"));
}

TEST(HostProgram, DetailsLeaveTheIconOutWhenToldTo) {
  const desktop::Desktop world = OneApplication();
  const std::string path = kFolder + R"(\Werkzeug Ä\tool.exe)";
  EXPECT_EQ(
      RunProgram(kProgram, {"details", path, "--format", "json", "--no-icons"}).output,
      R"({"name":"tool","ico":"","exepath":"C:\\TarnwickTest\\Host\\Werkzeug Ä\\tool.exe","exe":"tool.exe"})"
      "\n");
  EXPECT_THAT(RunProgram(kProgram, {"details", path, "--no-icons"}).output, HasSubstr("left out"));
}

TEST(HostProgram, WatchEndsByItselfWhenToldTo) {
  EXPECT_EQ(RunProgram(kProgram, {"watch", "--interval", "50", "--for", "300"}).exitCode, 0u);
}

}  // namespace
}  // namespace tarnwick::tests
