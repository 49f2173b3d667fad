#include "desktop/description.h"

#include "common/wide_text.h"
#include "desktop/journal.h"
#include "desktop/windows_calls.h"
#include "support/file_bytes.h"
#include "support/process.h"
#include "support/registry_value.h"
#include "support/uninstall_key.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace tarnwick::desktop {
namespace {

using common::Narrow;
using testing::AllOf;
using testing::HasSubstr;
using tests::PathExists;
using tests::ReadBytes;

const std::string kFolder = R"(C:\TarnwickTest\Description)";

std::string Environment(const wchar_t* name) { return Narrow(_wgetenv(name)); }

// A string value, or a number as decimal text; "none" where there is no such value.
std::string Value(const std::string& key, const std::string& name, REGSAM view = 0) {
  const std::optional<tests::RegistryValue> value = tests::ReadRegistryValue(key, name, view);
  if (!value) return "none";
  if (value->type == REG_DWORD) {
    DWORD number = 0;
    std::memcpy(&number, value->bytes.data(), sizeof number);
    return std::to_string(number);
  }
  std::wstring text(value->bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), value->bytes.data(), text.size() * sizeof(wchar_t));
  return Narrow(text.c_str());
}

const std::string kTestKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickDescriptionTest)";
const std::string& kUninstall = tests::kUninstallKey;

Desktop Build(const std::string& json) {
  Desktop desktop;
  ApplyDescription(desktop, json);
  return desktop;
}

std::string Refusal(const std::string& json) {
  try {
    Build(json);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing thrown";
}

TEST(DesktopDescription, MakesRegistryValuesOfEveryType) {
  Desktop desktop = Build(R"({"registry": [
      {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickDescriptionTest", "view": "32", "values": {
        "Text": "Игра", "Number": 7, "Path": {"path": "%SystemDrive%\\x"}, "Expand": {"expand": "%x%"},
        "Multi": {"multi": ["a", "b"]}, "Dword": {"dword": 8}, "Qword": {"qword": 9}, "Binary": {"hex": "00 fF"},
        "Raw": {"type": 1, "hex": "4100"}}},
      {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickDescriptionTest", "view": "64", "values": {"": "default"}}]})");
  EXPECT_EQ(Value(kTestKey, "Text", KEY_WOW64_32KEY), "Игра");
  EXPECT_EQ(Value(kTestKey, "Number", KEY_WOW64_32KEY), "7");
  EXPECT_EQ(Value(kTestKey, "Path", KEY_WOW64_32KEY), "C:\\x");
  EXPECT_EQ(Value(kTestKey, "Expand", KEY_WOW64_32KEY), "%x%");
  EXPECT_EQ(Value(kTestKey, "Multi", KEY_WOW64_32KEY), "a");
  EXPECT_EQ(Value(kTestKey, "Dword", KEY_WOW64_32KEY), "8");
  EXPECT_EQ(Value(kTestKey, "Raw", KEY_WOW64_32KEY), "A");
  EXPECT_NE(Value(kTestKey, "Qword", KEY_WOW64_32KEY), "none");
  EXPECT_NE(Value(kTestKey, "Binary", KEY_WOW64_32KEY), "none");
  EXPECT_EQ(Value(kTestKey, "", KEY_WOW64_64KEY), "default");
  EXPECT_EQ(Value(kTestKey, "Text", KEY_WOW64_64KEY), "none");
  desktop.Remove();
  EXPECT_EQ(Value(kTestKey, "Text", KEY_WOW64_32KEY), "none");
}

TEST(DesktopDescription, MakesFilesFoldersExecutablesIconsAndJunctions) {
  Desktop desktop = Build(R"({
      "comment": "anything",
      "folders": ["C:\\TarnwickTest\\Description\\Empty"],
      "files": [{"path": "C:\\TarnwickTest\\Description\\a.txt", "text": "hello", "modified": 1600000000},
                {"path": "C:\\TarnwickTest\\Description\\b.bin", "hex": "4D5A"},
                {"path": "C:\\TarnwickTest\\Description\\c.bin", "sparseSize": 5000000000}],
      "executables": [{"path": "C:\\TarnwickTest\\Description\\g.exe", "icon": "#3366CC", "description": "Игра",
                       "icons": [[{"size": 32, "color": "#FF0000"}]], "size": 70000,
                       "versions": [{"language": 1049, "codePage": 1200, "strings": {"ProductName": "P"}}]}],
      "iconFiles": [{"path": "C:\\TarnwickTest\\Description\\i.ico", "icon": "#00FF00"}],
      "junctions": [{"path": "C:\\TarnwickTest\\Description\\Link", "target": "C:\\TarnwickTest\\Description\\Empty"}]})");
  EXPECT_EQ(ReadBytes(kFolder + "\\a.txt"), "hello");
  EXPECT_EQ(ReadBytes(kFolder + "\\b.bin"), "MZ");
  EXPECT_EQ(std::filesystem::file_size(LongPath(kFolder + "\\c.bin")), 5'000'000'000u);
  ExecutableOptions options;
  options.icons = {{{{16, 0x3366CC}, {32, 0x3366CC}, {48, 0x3366CC}, {256, 0x3366CC}}}, {{{32, 0xFF0000}}}};
  options.versions = {{0x0409, 1200, {{"FileDescription", "Игра"}}}, {1049, 1200, {{"ProductName", "P"}}}};
  options.size = 70000;
  EXPECT_EQ(ReadBytes(kFolder + "\\g.exe"), ExecutableBytes(options));
  EXPECT_EQ(ReadBytes(kFolder + "\\i.ico"),
            IconFileBytes({{{16, 0x00FF00}, {32, 0x00FF00}, {48, 0x00FF00}, {256, 0x00FF00}}}));
  EXPECT_TRUE(PathExists(kFolder + "\\Link"));
  desktop.Remove();
  EXPECT_FALSE(PathExists(kFolder));
}

TEST(DesktopDescription, RegistersApplications) {
  Desktop desktop = Build(R"({"applications": [
      {"key": "Wren", "name": "Wren Notes", "publisher": "Nest", "version": "1.2", "installDate": "20240501",
       "location": "C:\\TarnwickTest\\Wren", "icon": "%SystemDrive%\\w.exe,0", "uninstall": "u.exe", "sizeKb": 42},
      {"key": "Owl", "view": "32", "name": "Owl", "systemComponent": true},
      {"key": "Tit", "user": true, "name": "Tit"}]})");
  const std::string wren = kUninstall + "Wren";
  EXPECT_EQ(Value(wren, "DisplayName", KEY_WOW64_64KEY), "Wren Notes");
  EXPECT_EQ(Value(wren, "Publisher", KEY_WOW64_64KEY), "Nest");
  EXPECT_EQ(Value(wren, "DisplayVersion", KEY_WOW64_64KEY), "1.2");
  EXPECT_EQ(Value(wren, "InstallDate", KEY_WOW64_64KEY), "20240501");
  EXPECT_EQ(Value(wren, "InstallLocation", KEY_WOW64_64KEY), R"(C:\TarnwickTest\Wren)");
  EXPECT_EQ(Value(wren, "DisplayIcon", KEY_WOW64_64KEY), R"(C:\w.exe,0)");
  EXPECT_EQ(Value(wren, "UninstallString", KEY_WOW64_64KEY), "u.exe");
  EXPECT_EQ(Value(wren, "EstimatedSize", KEY_WOW64_64KEY), "42");
  EXPECT_EQ(Value(kUninstall + "Owl", "SystemComponent", KEY_WOW64_32KEY), "1");
  EXPECT_EQ(Value(tests::kUserUninstallKey + "Tit", "DisplayName"), "Tit");
}

TEST(DesktopDescription, BuildsSteam) {
  Desktop desktop = Build(R"({"steam": {"path": "C:\\TarnwickTest\\Description\\Steam",
      "libraries": [{"path": "C:\\TarnwickTest\\Description\\Steam",
                     "apps": [{"appId": 70, "name": "Wren", "installDir": "Wren Folder"}]},
                    {"path": "C:\\TarnwickTest\\Description\\More",
                     "apps": [{"appId": 71, "name": "Owl", "installDir": "Owl", "uninstall": false, "installed": false}]}],
      "appInfo": {"version": 40, "apps": [{"appId": 70, "name": "Wren", "executables": ["w.exe"]}]},
      "shortcuts": [{"user": "1", "entries": [{"appName": "S", "exe": "C:\\s\\s.exe"}]}]}})");
  const std::string steam = kFolder + "\\Steam";
  EXPECT_EQ(Value(R"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\Valve\Steam)", "InstallPath"), steam);
  EXPECT_EQ(Value(R"(HKEY_CURRENT_USER\SOFTWARE\Valve\Steam)", "SteamPath"), steam);
  EXPECT_THAT(ReadBytes(steam + R"(\steamapps\libraryfolders.vdf)"),
              HasSubstr(R"(C:\\TarnwickTest\\Description\\More)"));
  EXPECT_THAT(ReadBytes(steam + R"(\steamapps\appmanifest_70.acf)"), HasSubstr("Wren Folder"));
  EXPECT_THAT(ReadBytes(kFolder + R"(\More\steamapps\appmanifest_71.acf)"), HasSubstr("Owl"));
  EXPECT_EQ(Value(kUninstall + "Steam App 70", "InstallLocation", KEY_WOW64_64KEY),
            steam + R"(\steamapps\common\Wren Folder)");
  EXPECT_EQ(Value(kUninstall + "Steam App 71", "InstallLocation", KEY_WOW64_64KEY), "none");
  EXPECT_EQ(Value(R"(HKEY_CURRENT_USER\Software\Valve\Steam\Apps\70)", "Installed"), "1");
  EXPECT_EQ(Value(R"(HKEY_CURRENT_USER\Software\Valve\Steam\Apps\71)", "Installed"), "none");
  EXPECT_EQ(ReadBytes(steam + R"(\appcache\appinfo.vdf)").substr(0, 1), "\x28");
  EXPECT_THAT(ReadBytes(steam + R"(\userdata\1\config\shortcuts.vdf)"),
              AllOf(HasSubstr(R"("C:\s\s.exe")"), HasSubstr(R"("C:\s\")")));
}

TEST(DesktopDescription, BuildsTheLaunchersThatKeepFiles) {
  Desktop desktop = Build(R"({
      "epic": {"items": [{"appName": "TarnwickWren", "displayName": "Wren", "installLocation": "C:\\W"}],
               "launcherInstalled": [{"appName": "TarnwickOwl", "installLocation": "C:\\O"}]},
      "uplay": {"path": "C:\\TarnwickTest\\Description\\Uplay",
                "games": [{"name": "Wren", "installId": "17", "location": "C:\\W", "relative": "w.exe"}]},
      "battleNet": {"logs": [{"file": "Agent-t.log", "modified": 1700000000,
                              "games": [{"gameId": "wren", "installPath": "C:\\W", "relativePath": "w.exe"}]}]},
      "riot": {"launchHelper": "C:\\R\\h.exe", "products": [{"id": "wren", "installPath": "C:/W"}]},
      "miHoYo": {"games": [{"gameBiz": "wren_x", "installPath": "C:/W"}]},
      "itch": true, "twitch": true})");
  const std::string data = Environment(L"ProgramData");
  EXPECT_EQ(
      Value(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Epic Games\EpicGamesLauncher)", "AppDataPath", KEY_WOW64_32KEY),
      data + R"(\Epic\EpicGamesLauncher\Data)");
  EXPECT_THAT(ReadBytes(data + R"(\Epic\EpicGamesLauncher\Data\Manifests\TarnwickWren.item)"),
              HasSubstr("Wren"));
  EXPECT_THAT(ReadBytes(data + R"(\Epic\UnrealEngineLauncher\LauncherInstalled.dat)"),
              HasSubstr("TarnwickOwl"));
  EXPECT_THAT(ReadBytes(kFolder + R"(\Uplay\cache\configuration\configurations)"), HasSubstr("Wren"));
  EXPECT_EQ(Value(kUninstall + "Uplay", "InstallLocation", KEY_WOW64_32KEY), kFolder + "\\Uplay");
  EXPECT_EQ(Value(kUninstall + "Uplay Install 17", "DisplayName", KEY_WOW64_32KEY), "Wren");
  EXPECT_THAT(ReadBytes(data + R"(\Battle.net\Agent\Agent-t.log)"), HasSubstr("/game/wren"));
  EXPECT_THAT(ReadBytes(data + R"(\Riot Games\RiotClientInstalls.json)"), HasSubstr("rc_live"));
  EXPECT_THAT(ReadBytes(data + R"(\Riot Games\Metadata\wren.live\wren.live.product_settings.yaml)"),
              HasSubstr("C:/W"));
  EXPECT_THAT(ReadBytes(Environment(L"APPDATA") + R"(\miHoYo\HYP\1_0\gamedata.dat)"), HasSubstr("wren_x"));
  EXPECT_TRUE(PathExists(Environment(L"APPDATA") + R"(\itch\db\butler.db)"));
  EXPECT_TRUE(PathExists(data + R"(\Twitch\Games\Sql\GameInstallInfo.sqlite)"));
  desktop.Remove();
  EXPECT_FALSE(PathExists(data + R"(\Riot Games)"));
}

TEST(DesktopDescription, BuildsTheStore) {
  Desktop desktop = Build(R"({"store": {"packages": [
      {"fullName": "TarnwickWren_1_x64__t", "familyName": "TarnwickWren_t", "displayName": "Wren",
       "folder": "C:\\TarnwickTest\\Description\\Wren", "productId": "9TARNWICK",
       "manifest": {"identityName": "TarnwickWren", "displayName": "Wren", "publisherDisplayName": "Nest", "executable": "w.exe"}}]}})");
  const std::string key =
      R"(HKEY_CURRENT_USER\Software\Classes\Local Settings\Software\Microsoft\Windows\CurrentVersion\AppModel\Repository\Packages\)";
  EXPECT_EQ(Value(key + "TarnwickWren_1_x64__t", "PackageRootFolder"), kFolder + "\\Wren");
  EXPECT_EQ(Value(key + "TarnwickWren_1_x64__t", "PackageFamilyName"), "TarnwickWren_t");
  EXPECT_EQ(
      Value(
          R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\InstallService\State\CategoryCache\TarnwickWren_t)",
          "ProductId", KEY_WOW64_64KEY),
      "9TARNWICK");
  EXPECT_THAT(ReadBytes(kFolder + R"(\Wren\AppxManifest.xml)"), HasSubstr("w.exe"));
  EXPECT_THAT(ReadBytes(Environment(L"LOCALAPPDATA") +
                        R"(\Packages\Microsoft.WindowsStore_8wekyb3d8bbwe\LocalCache\Entitlements.json)"),
              HasSubstr("9TARNWICK"));
}

TEST(DesktopDescription, BuildsTheLaunchersThatUseTheRegistryAlone) {
  Desktop desktop = Build(R"({
      "ea": {"games": [{"subkey": "Wren", "productGuid": "{T-1}", "name": "Wren", "executable": "C:\\w.exe"}]},
      "gog": {"games": [{"gameId": "987001", "name": "Owl", "executable": "C:\\o.exe", "view": "64"}]},
      "bethesda": {"path": "C:\\TarnwickTest\\Description\\Beth",
                   "games": [{"productId": "5", "name": "Tit", "location": "C:\\T"}]},
      "arc": {"games": [{"subkey": "Jay", "client": "C:\\j.exe", "installPath": "C:\\J"}]},
      "gameUx": {"games": [{"subkey": "{T-2}", "applicationId": "{T-3}", "executable": "C:\\g.exe"}]}})");
  const std::string software = R"(HKEY_LOCAL_MACHINE\SOFTWARE\)";
  EXPECT_EQ(Value(software + R"(EA Games\Wren)", "Product GUID", KEY_WOW64_32KEY), "{T-1}");
  EXPECT_EQ(Value(kUninstall + "{T-1}", "DisplayIcon", KEY_WOW64_32KEY), R"(C:\w.exe)");
  EXPECT_EQ(Value(software + R"(GOG.com\Games\987001)", "exe", KEY_WOW64_64KEY), R"(C:\o.exe)");
  EXPECT_EQ(Value(software + R"(Bethesda Softworks\Bethesda.net)", "installLocation", KEY_WOW64_32KEY),
            kFolder + "\\Beth");
  EXPECT_TRUE(PathExists(kFolder + R"(\Beth\BethesdaNetLauncher.exe)"));
  EXPECT_THAT(Value(kUninstall + "Bethesda 5", "UninstallString", KEY_WOW64_32KEY),
              HasSubstr("bethesdanet://uninstall/5"));
  EXPECT_EQ(Value(software + R"(Perfect World Entertainment\Core\Jay)", "Client", KEY_WOW64_32KEY),
            R"(C:\j.exe)");
  EXPECT_EQ(Value(software + R"(Microsoft\Windows\CurrentVersion\GameUX\Games\{T-2})", "ApplicationId",
                  KEY_WOW64_32KEY),
            "{T-3}");
}

TEST(DesktopDescription, WritesTheCatalogue) {
  Desktop desktop = Build(R"({"catalogue": {"path": "C:\\TarnwickTest\\Description\\list.xml",
      "games": [{"DisplayName": "Wren & Owl", "SourceEx": "STEAM", "SourceExId": "70", "DefaultFolder": "%userprofile%\\W"}]}})");
  EXPECT_THAT(
      ReadBytes(kFolder + "\\list.xml"),
      AllOf(HasSubstr("<DisplayName>Wren &amp; Owl</DisplayName>"), HasSubstr("<SourceEx>STEAM</SourceEx>"),
            HasSubstr(R"(<DefaultFolder>%userprofile%\W</DefaultFolder>)")));
}

struct Fault {
  const char* json;
  const char* message;
};

TEST(DesktopDescription, NamesThePlaceOfEveryFault) {
  const Fault faults[] = {
      {"{", "not JSON"},
      {"[]", "at /: needs an object, not array"},
      {R"({"stem": {}})", "at /: unknown section 'stem'"},
      {R"({"steam": {}})", "at /steam: missing member 'path'"},
      {R"({"steam": {"path": 7}})", "at /steam/path: needs a text, not number"},
      {R"({"steam": {"path": "x"}})", "at /steam/path: needs an absolute path, not 'x'"},
      {R"({"steam": {"path": "C:\\TarnwickTest\\D", "libraries": [{"path": "C:\\TarnwickTest\\D", "apps": [{"name": "W"}]}]}})",
       "at /steam/libraries/0/apps/0: missing member 'appId'"},
      {R"({"registry": [{"key": "HKEY_CURRENT_USER\\T", "values": {"a": [1]}}]})",
       "at /registry/0/values/a: needs a text"},
      {R"({"registry": [{"key": "HKEY_CURRENT_USER\\T", "values": {"a": -1}}]})",
       "at /registry/0/values/a: needs a whole number"},
      {R"({"registry": [{"key": "HKEY_CURRENT_USER\\T", "values": {"a": 4294967296}}]})",
       "is larger than 4294967295"},
      {R"({"registry": [{"key": "HKEY_CURRENT_USER\\T", "values": {"a": {"multi": [], "hex": ""}}}]})",
       "exactly one kind"},
      {R"({"registry": [{"key": "HKEY_CURRENT_USER\\T", "values": {"a": {"hex": "0g"}}}]})",
       "/registry/0/values/a/hex: holds"},
      {R"({"registry": [{"key": "HKEY_CURRENT_USER\\T", "values": {"a": {"hex": "012"}}}]})",
       "two hexadecimal digits"},
      {R"({"registry": [{"kye": "x"}]})",
       "at /registry/0: unknown member 'kye'; known are key, view, values"},
      {R"({"registry": [{"key": "HKLM\\x"}]})",
       "in /registry: not a registry key with a hive's long name: HKLM\\x"},
      {R"({"registry": [{"key": "HKEY_CURRENT_USER\\T", "view": "16"}]})",
       "at /registry/0/view: needs \"native\""},
      {R"({"files": [{"path": "C:\\TarnwickTest\\f", "text": "", "hex": ""}]})",
       "at /files/0: needs one kind of content"},
      {R"({"executables": [{"path": "C:\\TarnwickTest\\e", "icon": "blue"}]})",
       "at /executables/0/icon: needs a colour"},
      {R"({"executables": [{"path": "C:\\TarnwickTest\\e", "icons": [[{"size": 0, "color": "#000000"}]]}]})",
       "1 to 256"},
      {R"({"itch": "yes"})", "at /itch: needs true or false, not string"},
      {R"({"folders": {}})", "at /folders: needs a list, not object"},
      {R"({"catalogue": {"path": "C:\\TarnwickTest\\c", "games": [{"Display": "x"}]}})",
       "at /catalogue/games/0: unknown member 'Display'"},
      {R"({"catalogue": {"path": "C:\\TarnwickTest\\c", "games": [{"SourceEx": "Wren"}]}})",
       "at /catalogue/games/0/SourceEx: no source"},
  };
  for (const Fault& fault : faults) EXPECT_THAT(Refusal(fault.json), HasSubstr(fault.message)) << fault.json;
  EXPECT_FALSE(PathExists(R"(C:\TarnwickTest\D)"));
}

TEST(DesktopState, GivesTheSameJournalBack) {
  Desktop desktop;
  desktop.File(kFolder + "\\Игра.txt", "old");
  std::string text;
  std::vector<MadeThing> made;
  {
    Desktop inner;
    inner.File(kFolder + "\\Игра.txt", std::string_view("new\0", 4));
    inner.Dword(kTestKey, "游戏", 7, View::k32);
    inner.Dword(kTestKey, "游戏", 8, View::k64);
    inner.ModifiedTime(kFolder, 1'500'000'000);
    inner.Junction(kFolder + "\\Link", kFolder);
    text = StateText(inner);
    made = inner.Made();
    inner.Keep();
  }
  Desktop read = DesktopFromState(text);
  ASSERT_EQ(read.Made().size(), made.size());
  for (size_t place = 0; place < made.size(); ++place) {
    EXPECT_EQ(read.Made()[place].kind, made[place].kind);
    EXPECT_EQ(read.Made()[place].place, made[place].place);
    EXPECT_EQ(read.Made()[place].name, made[place].name);
    EXPECT_EQ(read.Made()[place].view, made[place].view);
    ASSERT_EQ(read.Made()[place].before.has_value(), made[place].before.has_value());
    if (!made[place].before) continue;
    EXPECT_EQ(read.Made()[place].before->bytes, made[place].before->bytes);
    EXPECT_EQ(read.Made()[place].before->time, made[place].before->time);
  }
  read.Remove();
  EXPECT_EQ(ReadBytes(kFolder + "\\Игра.txt"), "old");
  EXPECT_EQ(Value(kTestKey, "游戏", KEY_WOW64_32KEY), "none");
  EXPECT_FALSE(PathExists(kFolder + "\\Link"));
}

TEST(DesktopState, RefusesWhatIsNoState) {
  EXPECT_THROW(DesktopFromState(""), std::runtime_error);
  EXPECT_THROW(DesktopFromState(R"({"format": "other", "made": []})"), std::runtime_error);
  EXPECT_THROW(
      DesktopFromState(R"({"format": "tarnwick-desktop-state 1", "made": [{"kind": "moon", "place": "x"}]})"),
      std::runtime_error);
  EXPECT_NO_THROW(DesktopFromState(R"({"format": "tarnwick-desktop-state 1", "made": []})"));
}

// What the program printed, both streams together, and its exit code.
tests::ProgramResult RunDesktop(const std::vector<std::string>& arguments) {
  tests::ProgramResult result = tests::RunProgram("tarnwick-desktop.exe", arguments);
  result.output += result.errors;
  return result;
}

TEST(DesktopProgram, BuildsAndRemovesInTwoProcesses) {
  Desktop desktop;
  desktop.File(kFolder + "\\описание.json",
               R"({"files": [{"path": "C:\\TarnwickTest\\Description\\Made\\a.txt", "text": "made"}],
                  "registry": [{"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickDescriptionTest", "values": {"a": "b"}}]})");
  const std::string state = kFolder + "\\состояние.json";
  const tests::ProgramResult built = RunDesktop({"build", kFolder + "\\описание.json", "--state", state});
  EXPECT_EQ(built.exitCode, 0u) << built.output;
  EXPECT_THAT(built.output, HasSubstr("Made 4 things."));
  EXPECT_EQ(ReadBytes(kFolder + "\\Made\\a.txt"), "made");
  EXPECT_EQ(Value(kTestKey, "a"), "b");
  const tests::ProgramResult again = RunDesktop({"build", kFolder + "\\описание.json", "--state", state});
  EXPECT_EQ(again.exitCode, 1u);
  EXPECT_THAT(again.output, HasSubstr("a desktop stands already"));
  const tests::ProgramResult removed = RunDesktop({"remove", "--state", state});
  EXPECT_EQ(removed.exitCode, 0u) << removed.output;
  EXPECT_FALSE(PathExists(kFolder + "\\Made"));
  EXPECT_FALSE(PathExists(kFolder + "\\состояние.json"));
  EXPECT_EQ(Value(kTestKey, "a"), "none");
}

TEST(DesktopProgram, SaysWhatIsWrong) {
  Desktop desktop;
  desktop.File(kFolder + "\\bad.json",
               R"({"folders": ["C:\\TarnwickTest\\Description\\Half"], "files": [{}]})");
  const tests::ProgramResult help = RunDesktop({"--help"});
  EXPECT_EQ(help.exitCode, 0u);
  EXPECT_THAT(help.output,
              AllOf(HasSubstr("build"), HasSubstr("remove"), HasSubstr("TARNWICK_THROWAWAY_MACHINE")));
  EXPECT_EQ(RunDesktop({}).exitCode, 2u);
  EXPECT_EQ(RunDesktop({"biuld", "x"}).exitCode, 2u);
  EXPECT_EQ(RunDesktop({"build"}).exitCode, 2u);
  const tests::ProgramResult missing = RunDesktop({"build", "C:\\TarnwickTest\\none.json"});
  EXPECT_EQ(missing.exitCode, 1u);
  EXPECT_THAT(missing.output, HasSubstr("can't open 'C:\\TarnwickTest\\none.json'"));
  const tests::ProgramResult bad =
      RunDesktop({"build", kFolder + "\\bad.json", "--state", kFolder + "\\s.json"});
  EXPECT_EQ(bad.exitCode, 1u);
  EXPECT_THAT(bad.output, HasSubstr("at /files/0: missing member 'path'"));
  EXPECT_FALSE(PathExists(kFolder + "\\Half"));
  EXPECT_FALSE(PathExists(kFolder + "\\s.json"));
  EXPECT_EQ(RunDesktop({"remove", "--state", kFolder + "\\bad.json"}).exitCode, 1u);
}

TEST(DesktopProgram, RefusesAMachineThatIsNotThrowaway) {
  Desktop desktop;
  desktop.File(kFolder + "\\empty.json", "{}");
  _putenv("TARNWICK_THROWAWAY_MACHINE=");
  const tests::ProgramResult run =
      RunDesktop({"build", kFolder + "\\empty.json", "--state", kFolder + "\\s.json"});
  _putenv("TARNWICK_THROWAWAY_MACHINE=1");
  EXPECT_EQ(run.exitCode, 1u);
  EXPECT_THAT(run.output, HasSubstr("TARNWICK_THROWAWAY_MACHINE=1"));
}

}  // namespace
}  // namespace tarnwick::desktop
