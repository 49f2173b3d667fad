// tarnwick.exe as a person or a script runs it.
#include "desktop/desktop.h"
#include "support/process.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

namespace tarnwick::tests {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kProgram = "tarnwick.exe";
const std::string kFolder = R"(C:\TarnwickTest\Host)";
const std::string kCatalogue = kFolder + R"(\Каталог 游戏.xml)";

std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
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

TEST(HostProgram, ScanPrintsATableInUtf8WithTheStrategyFromTheLog) {
  const desktop::Desktop world = OneGame();
  const ProgramResult result = RunProgram(kProgram, {"scan", kCatalogue});
  EXPECT_EQ(result.exitCode, 0u) << result.errors;
  EXPECT_THAT(result.output, HasSubstr("Ночной Рейс"));
  EXPECT_THAT(result.output, HasSubstr("Default Registry Scan"));
  EXPECT_THAT(result.output, HasSubstr(R"(C:\TarnwickTest\Host\Ночной Рейс\run.exe)"));
  EXPECT_THAT(result.output, Not(HasSubstr("\r")));
}

TEST(HostProgram, ScanPrintsTheLibrarysJsonAsItStands) {
  const desktop::Desktop world = OneGame();
  const ProgramResult result = RunProgram(kProgram, {"scan", kCatalogue, "--format", "json"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_THAT(result.output,
              StartsWith(R"([{"name":"Ночной Рейс","loc":"C:\\TarnwickTest\\Host\\Ночной Рейс\\run.exe")"));
  EXPECT_THAT(result.output, testing::EndsWith("\"exeName\":\"run.exe\"}]\n"));
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
  EXPECT_THAT(table.output, HasSubstr("1 applications."));
  EXPECT_THAT(RunProgram(kProgram, {"apps", "--all", "--format", "json"}).output,
              HasSubstr("\"exeName\":\"tool.exe\""));
  EXPECT_THAT(
      RunProgram(kProgram, {"apps", "--filter", "hostmacher", "--page", "2", "--format", "json"}).output,
      "[]\n");
  EXPECT_THAT(RunProgram(kProgram, {"apps", "--all", "--format", "html"}).output, HasSubstr("Werkzeug Ä"));
  EXPECT_THAT(RunProgram(kProgram, {"apps", "--filter", "no such application"}).output,
              "No applications found.\n");
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

TEST(HostProgram, WatchEndsByItselfWhenToldTo) {
  EXPECT_EQ(RunProgram(kProgram, {"watch", "--interval", "50", "--for", "300"}).exitCode, 0u);
}

}  // namespace
}  // namespace tarnwick::tests
