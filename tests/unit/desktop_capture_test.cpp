// A captured machine is checked whole, then built, then taken away.
#include "common/wide_text.h"
#include "desktop/bytes.h"
#include "desktop/description.h"
#include "desktop/desktop.h"
#include "desktop/icon_image.h"
#include "desktop/journal.h"
#include "desktop/json_node.h"
#include "desktop/windows_calls.h"
#include "foundation/owner.h"
#include "support/file_bytes.h"
#include "support/icon_colour.h"
#include "support/process.h"
#include "support/registry_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <wincrypt.h>

#include <filesystem>

namespace tarnwick::desktop {
namespace {

using common::Wide;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using tests::PathExists;
using tests::ReadBytes;

const std::string kFolder = R"(C:\TarnwickTest\Capture)";
const std::string kKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickCaptureTest)";

// "type:bytes in hex", or "none".
std::string Value(const std::string& key, const std::string& name, REGSAM view = 0) {
  const std::optional<tests::RegistryValue> value = tests::ReadRegistryValue(key, name, view);
  if (!value) return "none";
  std::string text = std::to_string(value->type) + ":";
  for (const char byte : value->bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(byte));
    text += digits;
  }
  return text;
}

std::string Base64(const std::string& bytes) {
  DWORD length = 0;
  const BYTE* data = reinterpret_cast<const BYTE*>(bytes.data());
  const DWORD size = static_cast<DWORD>(bytes.size());
  constexpr DWORD kForm = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
  CryptBinaryToStringA(data, size, kForm, nullptr, &length);
  std::string text(length, '\0');
  CryptBinaryToStringA(data, size, kForm, text.data(), &length);
  text.resize(length);
  return text;
}

// A capture of drive C: with these sections beside its head, and with these members beside its version.
std::string CaptureText(const std::string& sections, const std::string& head = "") {
  return R"({"capture": {"version": 1, "drives": ["C:\\"])" + (head.empty() ? "" : ", " + head) + "}" +
         (sections.empty() ? "" : ", " + sections) + "}";
}

Desktop Build(const std::string& json) {
  Desktop desktop;
  ApplyDescription(desktop, json);
  return desktop;
}

// What a refused text is refused for; it must leave nothing behind, and nothing must have been made before.
std::string Refusal(const std::string& json) {
  Desktop desktop;
  try {
    ApplyDescription(desktop, json);
  } catch (const JsonError& error) {
    EXPECT_TRUE(desktop.Made().empty()) << json;
    EXPECT_THAT(error.what(), Not(HasSubstr("\n"))) << json;
    EXPECT_LT(std::string(error.what()).size(), 1000u) << json;
    return error.what();
  }
  return "nothing thrown";
}

TEST(DesktopCapture, BuildsKeysWithValuesOfEveryType) {
  Desktop desktop = Build(CaptureText(R"("keys": [
      {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickCaptureTest", "view": "32", "values": [
        {"name": "Path", "type": 1, "text": "é"}, {"name": "", "type": 2, "text": "%x%"},
        {"name": "Number", "type": 4, "number": 5}, {"name": "Odd", "type": 3, "hex": "0a0b0c"},
        {"name": "ShortNumber", "type": 4, "hex": "01"}, {"name": "Strange", "type": 77, "hex": "ff"}]},
      {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickCaptureTest", "view": "64", "values": []}])"));
  EXPECT_EQ(Value(kKey, "Path", KEY_WOW64_32KEY), "1:e9000000");
  EXPECT_EQ(Value(kKey, "", KEY_WOW64_32KEY), "2:2500780025000000");
  EXPECT_EQ(Value(kKey, "Number", KEY_WOW64_32KEY), "4:05000000");
  EXPECT_EQ(Value(kKey, "Odd", KEY_WOW64_32KEY), "3:0a0b0c");
  EXPECT_EQ(Value(kKey, "ShortNumber", KEY_WOW64_32KEY), "4:01");
  EXPECT_EQ(Value(kKey, "Strange", KEY_WOW64_32KEY), "77:ff");
  EXPECT_EQ(Value(kKey, "Path", KEY_WOW64_64KEY), "none");
  EXPECT_EQ(desktop.Made().size(), 8u) << "two keys, six values";
  desktop.Remove();
  EXPECT_EQ(Value(kKey, "Path", KEY_WOW64_32KEY), "none");
}

TEST(DesktopCapture, BuildsFoldersAndFiles) {
  Desktop desktop = Build(CaptureText(R"("subfolders": [{"path": "C:\\TarnwickTest\\Capture\\Empty\\"}],
      "data": [{"path": "C:/TarnwickTest//Capture/a.txt", "text": "héllo", "modified": 1600000000},
               {"path": "C:\\TarnwickTest\\Capture\\b.bin", "base64": "AAECAw=="},
               {"path": "C:\\TarnwickTest\\Capture\\c.bin", "base64": "AAEC", "cut": true, "size": 9000000000}],
      "missing": ["C:\\TarnwickTest\\Capture\\gone.txt"])"));
  EXPECT_TRUE(PathExists(kFolder + R"(\Empty)"));
  EXPECT_EQ(ReadBytes(kFolder + R"(\a.txt)"), "héllo");
  EXPECT_EQ(ReadBytes(kFolder + R"(\b.bin)"), std::string("\0\1\2\3", 4));
  EXPECT_EQ(std::filesystem::file_size(LongPath(kFolder + R"(\c.bin)")), 9'000'000'000u);
  EXPECT_FALSE(PathExists(kFolder + R"(\gone.txt)"));
  WIN32_FILE_ATTRIBUTE_DATA data{};
  GetFileAttributesExW(LongPath(kFolder + R"(\a.txt)").c_str(), GetFileExInfoStandard, &data);
  const uint64_t written =
      (static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) | data.ftLastWriteTime.dwLowDateTime;
  EXPECT_EQ(written, (1'600'000'000ull + 11'644'473'600ull) * 10'000'000);
  desktop.Remove();
  EXPECT_FALSE(PathExists(kFolder));
}

std::string IconJson(int size, uint32_t rgb) {
  return R"({"size": )" + std::to_string(size) + R"(, "png": ")" + Base64(PngBytes(size, rgb)) + R"("})";
}

uint32_t ExtractedColour(const std::string& path, int index, int size) {
  HICON icon = nullptr;
  if (PrivateExtractIconsW(Wide(path).c_str(), index, size, size, &icon, nullptr, 1, 0) != 1)
    return tests::kNoIcon;
  return tests::ColourOf(Icon(icon));
}

TEST(DesktopCapture, BuildsProgramsWithPicturesOfSeveralSizes) {
  Desktop desktop = Build(CaptureText(
      R"("programs": [{"path": "C:\\TarnwickTest\\Capture\\x.exe", "size": 5000000,
        "versions": [{"language": 1033, "codePage": 1200, "values": {"FileDescription": "A game"}}],
        "icons": [{"images": [)" +
      IconJson(16, 0xFF0000) + ", " + IconJson(48, 0x00FF00) + ", " + IconJson(256, 0x0000FF) +
      R"(]}, {"images": [)" + IconJson(32, 0x123456) +
      R"(]}]}, {"path": "C:\\TarnwickTest\\Capture\\x.ico", "kind": "icon", "icons": [{"images": [)" +
      IconJson(48, 0xABCDEF) + "]}]}]"));
  const std::string program = kFolder + R"(\x.exe)";
  EXPECT_EQ(std::filesystem::file_size(LongPath(program)), 5'000'000u);
  EXPECT_EQ(tests::RunProgram(program, {}).exitCode, 0u);
  EXPECT_EQ(ExtractedColour(program, 0, 16), 0xFF0000u);
  EXPECT_EQ(ExtractedColour(program, 0, 48), 0x00FF00u);
  EXPECT_EQ(ExtractedColour(program, 0, 256), 0x0000FFu);
  EXPECT_EQ(ExtractedColour(program, 1, 32), 0x123456u);
  EXPECT_EQ(ExtractedColour(kFolder + R"(\x.ico)", 0, 48), 0xABCDEFu);
  EXPECT_THAT(ReadBytes(program), HasSubstr(std::string("A\0 \0g\0a\0m\0e\0", 12)));
}

// A picture of two colours stays what it is, to the byte.
TEST(DesktopCapture, KeepsAPictureAsItIs) {
  const std::string picture = PngBytes(24, 0x102030);
  EXPECT_EQ(IconImageBytes({24, 0, picture}), picture);
  EXPECT_THAT(ExecutableBytes({.icons = {{{{24, 0, picture}}}}}), HasSubstr(picture));
}

TEST(DesktopCapture, KeepsAFolderFromBeingListed) {
  Desktop desktop =
      Build(CaptureText(R"("subfolders": [{"path": "C:\\TarnwickTest\\Capture\\Locked é", "refused": true}],
      "data": [{"path": "C:\\TarnwickTest\\Capture\\Locked é\\a.txt", "text": "inside"}])"));
  const std::string locked = kFolder + R"(\Locked é)";
  std::error_code error;
  std::filesystem::directory_iterator listing(Wide(locked), error);
  EXPECT_EQ(error, std::errc::permission_denied);
  EXPECT_TRUE(PathExists(locked));
  EXPECT_EQ(ReadBytes(locked + R"(\a.txt)"), "inside");
  desktop.Remove();
  EXPECT_FALSE(PathExists(kFolder));
}

TEST(DesktopCapture, SetsKnownFoldersAndVariablesAndGivesThemBack) {
  const std::string version = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion)";
  const std::string shell =
      R"(HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders)";
  const std::string variables = R"(HKEY_CURRENT_USER\Environment)";
  const std::string roaming = Value(shell, "AppData");
  const std::string programs = Value(version, "ProgramFilesDir", KEY_WOW64_64KEY);
  const std::string path = Value(variables, "PATH");
  {
    const Desktop desktop = Build(
        CaptureText("", R"("knownFolders": {"roaming data": "C:\\TarnwickTest\\Capture\\R", "local data": "",
               "program files": "C:\\TarnwickTest\\Capture\\P"},
               "environment": {"TW_CAPTURED": "é", "PATH": "C:\\none", "SystemRoot": "C:\\none"})"));
    EXPECT_TRUE(PathExists(kFolder + R"(\R)"));
    EXPECT_NE(Value(shell, "AppData"), roaming);
    EXPECT_EQ(Value(version, "ProgramFilesDir", KEY_WOW64_64KEY).size(), 2 + 4 * (kFolder.size() + 3));
    EXPECT_EQ(Value(variables, "TW_CAPTURED"), "1:e9000000");
    EXPECT_EQ(Value(variables, "PATH"), path);
    EXPECT_EQ(Value(variables, "SystemRoot"), "none");
  }
  EXPECT_EQ(Value(shell, "AppData"), roaming);
  EXPECT_EQ(Value(version, "ProgramFilesDir", KEY_WOW64_64KEY), programs);
  EXPECT_EQ(Value(variables, "TW_CAPTURED"), "none");
  EXPECT_FALSE(PathExists(kFolder));
}

const std::string& SmallCapture() {
  static const std::string text = CaptureText(
      R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\TarnwickCaptureTest", "values": [{"name": "é", "type": 4, "number": 5}]}],
      "subfolders": [{"path": "C:\\TarnwickTest\\Capture\\F"}],
      "data": [{"path": "C:\\TarnwickTest\\Capture\\a.xml", "text": "<a/>"}],
      "programs": [{"path": "C:\\TarnwickTest\\Capture\\x.exe", "icons": [{"images": [)" +
          IconJson(16, 0xFF0000) + R"(]}]}], "missing": [])",
      R"("tarnwick": "0.1.0", "catalogue": "C:\\TarnwickTest\\Capture\\a.xml",
         "environment": {"TW_CAPTURED": "x"}, "knownFolders": {"common data": "C:\\TarnwickTest\\Capture\\D"})");
  return text;
}

TEST(DesktopCapture, RefusesACaptureCutAnywhere) {
  EXPECT_NO_THROW(Build(SmallCapture()));
  for (size_t length = 0; length < SmallCapture().size(); ++length)
    ASSERT_THAT(Refusal(SmallCapture().substr(0, length)), HasSubstr("not JSON: it ends too early, at line"))
        << length;
  EXPECT_FALSE(PathExists(kFolder));
}

TEST(DesktopCapture, RefusesAnotherVersion) {
  EXPECT_EQ(Refusal(R"({"capture": {"version": 2, "moons": 3}, "moons": []})"),
            "at /capture/version: this capture has version 2; this program builds version 1");
  EXPECT_THAT(Refusal(R"({"capture": {}})"), HasSubstr("at /capture: missing member 'version'"));
  EXPECT_THAT(Refusal(R"({"capture": 1})"), HasSubstr("at /capture: needs an object"));
  EXPECT_THAT(Refusal(R"({"capture": {"version": -1}})"), HasSubstr("at /capture/version: needs"));
}

std::string Escaped(const std::string& text) { return Json(text).dump(); }

// As the path of a file, behind a file that is well.
std::string PathRefusal(const std::string& path) {
  return Refusal(CaptureText(R"("data": [{"path": "C:\\TarnwickTest\\Capture\\a", "text": ""}, {"path": )" +
                             Escaped(path) + R"(, "text": ""}])"));
}

TEST(DesktopCapture, RefusesPathsOutsideTheMachinesDrives) {
  const char* const begin = "is not a path that begins with a drive";
  for (const char* path :
       {"", "a", "a\\b", "\\a", "C:", "C:a", "\\\\server\\share\\a", "//server/share/a", "\\\\?\\C:\\a",
        "\\\\.\\C:\\a", "\\??\\C:\\a", "1:\\a", "%TEMP%\\a", "\xC3\xA9:\\a"})
    EXPECT_THAT(PathRefusal(path), AllOf(HasSubstr("at /data/1/path: "), HasSubstr(begin))) << path;
  EXPECT_EQ(PathRefusal("Q:\\a"), "at /data/1/path: 'Q:\\a' lies on no drive of the captured machine");
  EXPECT_THAT(PathRefusal("C:\\"), HasSubstr("is a drive, not a file"));
}

TEST(DesktopCapture, RefusesDrivesThatThisMachineDoesNotHave) {
  const auto with = [](const std::string& drives) {
    return Refusal(R"({"capture": {"version": 1, "drives": )" + drives + "}}");
  };
  EXPECT_EQ(with(R"(["C:\\", "Q:\\"])"), "at /capture/drives/1: this machine has no drive Q:");
  EXPECT_THAT(with(R"(["c:\\", "C:\\"])"), HasSubstr("at /capture/drives/1: names the drive a second time"));
  for (const char* drive : {R"(["C:"])", R"([""])", R"(["C:\\a"])", R"(["\\\\a\\b\\"])"})
    EXPECT_THAT(with(drive), AllOf(HasSubstr("at /capture/drives/0: "), HasSubstr("is no drive"))) << drive;
  if (GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr) {
    EXPECT_THAT(with(R"(["Z:\\"])"), HasSubstr("the root of the system below"));
  }
}

TEST(DesktopCapture, RefusesPathsThatLeadElsewhere) {
  for (const char* path : {"C:\\TarnwickTest\\..\\a", "C:\\..", "C:/TarnwickTest/../../a", "C:\\.\\a"})
    EXPECT_THAT(PathRefusal(path), AllOf(HasSubstr("at /data/1/path: "), HasSubstr("which leads elsewhere")))
        << path;
}

TEST(DesktopCapture, RefusesNamesThatAreNoFiles) {
  for (const char* name : {"CON", "nul", "Aux.txt", "com1", "LPT9.log", "COM\xC2\xB9", "CONIN$", "nul .txt"})
    EXPECT_THAT(PathRefusal("C:\\TarnwickTest\\" + std::string(name) + "\\a"), HasSubstr("of a device"))
        << name;
  for (const char* name : {"a.", "a ", "...", "a\\b. "})
    EXPECT_THAT(PathRefusal("C:\\TarnwickTest\\" + std::string(name)), HasSubstr("in a dot or a blank"))
        << name;
  for (const char* name : {"a:b", "a*", "a?", "a\"", "a|b", "<a>", "a\tb", "a\nb", "a::$DATA"})
    EXPECT_THAT(PathRefusal("C:\\TarnwickTest\\" + std::string(name)), HasSubstr("that no file's name may"))
        << name;
  EXPECT_THAT(PathRefusal("C:\\TarnwickTest\\" + std::string("a\0b", 3)), HasSubstr("no file's name"));
  EXPECT_THAT(PathRefusal("C:\\TarnwickTest\\" + std::string(256, 'a')), HasSubstr("more than 255"));
  std::string deep = "C:";
  for (int level = 0; level < 17000; ++level) deep += "\\a";
  EXPECT_THAT(PathRefusal(deep), HasSubstr("too long a path"));
}

TEST(DesktopCapture, AllowsNamesThatLookLikeDevicesOnly) {
  const Desktop desktop = Build(CaptureText(
      R"("data": [{"path": "C:\\TarnwickTest\\Capture\\Console\\com10.txt", "text": ""},
                  {"path": "C:\\TarnwickTest\\Capture\\..a\\nul_.txt", "text": ""}])"));
  EXPECT_TRUE(PathExists(kFolder + R"(\Console\com10.txt)"));
}

TEST(DesktopCapture, RefusesTheSystemsOwnFolders) {
  for (const char* path : {"C:\\windows\\system32\\kernel32.dll", "c:\\WINDOWS\\a", "C:\\Windows\\Installer",
                           "C:\\$Recycle.Bin\\a", "C:\\System Volume Information\\a", "C:\\windows"})
    EXPECT_THAT(PathRefusal(path), HasSubstr("lies in one of the system's own folders")) << path;
  EXPECT_THAT(PathRefusal("C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\StartUp\\a.bat"),
              HasSubstr("lies in a Start menu"));
  const Desktop desktop =
      Build(CaptureText(R"("data": [{"path": "C:\\Windows\\Installer\\{Tarnwick}\\i.ico", "text": ""}])"));
  EXPECT_TRUE(PathExists(R"(C:\Windows\Installer\{Tarnwick}\i.ico)"));
}

TEST(DesktopCapture, KnowsTheSystemsFoldersByTheirShortNamesToo) {
  Desktop desktop;
  desktop.Folder(kFolder + R"(\Start Menu)");
  wchar_t shortName[MAX_PATH] = {};
  GetShortPathNameW(Wide(kFolder + R"(\Start Menu)").c_str(), shortName, MAX_PATH);
  const std::string path = common::Narrow(shortName);
  if (path.find('~') == std::string::npos) GTEST_SKIP() << "this drive keeps no short names";
  EXPECT_THAT(PathRefusal(path + R"(\new folder~1\a.bat)"), HasSubstr("lies in a Start menu"));
}

TEST(DesktopCapture, RefusesMorePicturesAndTextsThanAProgramCanHold) {
  std::string many = IconJson(1, 0);
  for (int picture = 0; picture < 4096; ++picture) many += ", " + IconJson(1, 0);
  EXPECT_THAT(
      Refusal(CaptureText(R"("programs": [{"path": "C:\\T\\a", "icons": [{"images": [)" + many + "]}]}]")),
      HasSubstr("at /programs/0/icons: has more than 4096 pictures"));
  EXPECT_THAT(
      Refusal(CaptureText(
          R"("programs": [{"path": "C:\\T\\a", "versions": [{"language": 1, "codePage": 1, "values": {"a": ")" +
          std::string(40'000, 'a') + R"("}}]}])")),
      HasSubstr("at /programs/0/versions: has more texts"));
}

TEST(DesktopCapture, RefusesToWriteThroughLinks) {
  Desktop desktop;
  desktop.Folder(kFolder + R"(\Target)");
  desktop.Junction(kFolder + R"(\Link)", kFolder + R"(\Target)");
  EXPECT_THAT(PathRefusal(kFolder + R"(\Link\a)"),
              HasSubstr(R"(leads out through the link 'C:\TarnwickTest\Capture\Link')"));
  EXPECT_FALSE(PathExists(kFolder + R"(\Target\a)"));
}

std::string KeyRefusal(const std::string& key) {
  return Refusal(CaptureText(R"("keys": [{"key": )" + Escaped(key) +
                             R"(, "values": [{"name": "a", "type": 4, "number": 1}]}])"));
}

TEST(DesktopCapture, RefusesKeysOutsideTheKnownHives) {
  for (const char* key :
       {"", "SOFTWARE\\A", "HKLM\\SOFTWARE\\A", "HKEY_LOCAL_MACHINE", "HKEY_LOCAL_MACHINE\\SYSTEM\\A",
        "HKEY_LOCAL_MACHINE\\SOFTWAREX\\A", "HKEY_CURRENT_USER\\Environment", "HKEY_CLASSES_ROOT\\exefile",
        "HKEY_USERS\\.DEFAULT\\Software\\A", "HKEY_CURRENT_CONFIG\\Software\\A", "HKEY_MOON\\SOFTWARE\\A"})
    EXPECT_THAT(KeyRefusal(key), AllOf(HasSubstr("at /keys/0/key: "), HasSubstr("is outside HKEY_LOCAL")))
        << key;
  EXPECT_THAT(KeyRefusal("HKEY_CURRENT_USER\\Software\\a\nb"), HasSubstr("no key's name"));
  EXPECT_THAT(KeyRefusal("HKEY_CURRENT_USER\\Software\\" + std::string(256, 'a')), HasSubstr("255"));
}

TEST(DesktopCapture, RefusesTheSystemsOwnKeys) {
  const std::string software = "HKEY_LOCAL_MACHINE\\SOFTWARE\\";
  for (const char* key :
       {"Microsoft\\Windows\\CurrentVersion\\Run", "Microsoft\\Windows\\CurrentVersion\\RunOnce",
        "Microsoft\\Windows NT\\CurrentVersion\\Winlogon", "microsoft\\windows\\currentversion",
        "Microsoft\\Windows NT\\CurrentVersion\\Image File Execution Options\\a.exe", "Wine\\DllOverrides",
        "Classes\\exefile\\shell\\open\\command", "Policies\\a", "Microsoft\\Command Processor",
        "WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Run", "\\Wow6432Node\\\\Classes\\CLSID"}) {
    EXPECT_THAT(KeyRefusal(software + key), HasSubstr("belongs to the system")) << key;
    EXPECT_THAT(KeyRefusal("HKEY_CURRENT_USER\\SOFTWARE\\" + std::string(key)), HasSubstr("to the system"));
  }
  EXPECT_THAT(KeyRefusal("HKEY_LOCAL_MACHINE\\SOFTWARE"), HasSubstr("holds values of the system's"));
}

TEST(DesktopCapture, AllowsTheKeysOfApplicationsAndThoseThatLeadThere) {
  EXPECT_NO_THROW(Build(CaptureText(R"("keys": [
      {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE"}, {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows"},
      {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\TarnwickCapture", "view": "64",
       "values": [{"name": "a", "type": 4, "number": 1}]},
      {"key": "hkey_current_user\\software\\Classes\\Local Settings\\Software\\Microsoft\\Windows\\CurrentVersion\\AppModel\\Repository\\Packages\\TarnwickCapture",
       "values": [{"name": "a", "type": 4, "number": 1}]},
      {"key": "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Microsoft Games\\TarnwickCapture",
       "values": [{"name": "a", "type": 4, "number": 1}]}])")));
}

struct Fault {
  const char* sections;
  const char* message;
};

TEST(DesktopCapture, RefusesWhatStandsThereTwice) {
  const Fault faults[] = {
      {R"("data": [{"path": "C:\\TarnwickTest\\a", "text": ""}, {"path": "c:/TARNWICKTEST/A", "text": ""}])",
       "at /data/1/path: 'c:\\TARNWICKTEST\\A' stands at /data/0/path already"},
      {R"("data": [{"path": "C:\\TarnwickTest\\a", "text": ""}], "programs": [{"path": "C:\\TarnwickTest\\a"}])",
       "at /programs/0/path: 'C:\\TarnwickTest\\a' stands at /data/0/path already"},
      {R"("subfolders": [{"path": "C:\\TarnwickTest\\a"}], "data": [{"path": "C:\\TarnwickTest\\a", "text": ""}])",
       "at /data/0/path: 'C:\\TarnwickTest\\a' stands at /subfolders/0/path already"},
      {R"("subfolders": [{"path": "C:\\TarnwickTest\\a"}, {"path": "C:\\TarnwickTest\\a\\"}])",
       "at /subfolders/1/path: "},
      {R"("data": [{"path": "C:\\TarnwickTest\\a\\b", "text": ""}, {"path": "C:\\TarnwickTest\\A", "text": ""}])",
       "at /data/0/path: lies below the file at /data/1/path"},
      {R"("subfolders": [{"path": "C:\\TarnwickTest\\a\\b"}], "programs": [{"path": "C:\\TarnwickTest\\A"}])",
       "at /subfolders/0/path: lies below the file at /programs/0/path"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T"}, {"key": "HKEY_CURRENT_USER\\SOFTWARE\\t"}])",
       "at /keys/1/key: "},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "values": [{"name": "a", "type": 3, "hex": ""}, {"name": "A", "type": 3, "hex": ""}]}])",
       "at /keys/0/values/1: 'A' stands in this key twice"},
  };
  for (const Fault& fault : faults)
    EXPECT_THAT(Refusal(CaptureText(fault.sections)), HasSubstr(fault.message)) << fault.sections;
}

TEST(DesktopCapture, NamesThePlaceOfEveryFault) {
  const Fault faults[] = {
      {R"("moons": [])", "at /: a captured machine has no section 'moons'"},
      {R"("registry": [])", "at /: a captured machine has no section 'registry'"},
      {R"("data": {})", "at /data: needs a list, not object"},
      {R"("data": [7])", "at /data/0: needs an object"},
      {R"("data": [{"path": "C:\\T\\a"}])", "at /data/0: needs one kind of content"},
      {R"("data": [{"path": "C:\\T\\a", "text": "", "base64": ""}])", "at /data/0: needs one kind"},
      {R"("data": [{"path": "C:\\T\\a", "text": "", "moon": 1}])", "at /data/0: unknown member 'moon'"},
      {R"("data": [{"path": "C:\\T\\a", "base64": "AAE"}])", "at /data/0/base64: is no base64 text"},
      {R"("data": [{"path": "C:\\T\\a", "base64": "AA=A"}])", "at /data/0/base64: is no base64 text"},
      {R"("data": [{"path": "C:\\T\\a", "base64": "A\n=="}])", "at /data/0/base64: is no base64 text"},
      {R"("data": [{"path": "C:\\T\\a", "base64": "AA\u0000="}])", "at /data/0/base64: is no base64 text"},
      {R"("data": [{"path": "C:\\T\\a", "text": "", "cut": true}])", "at /data/0: missing member 'size'"},
      {R"("data": [{"path": "C:\\T\\a", "text": "", "cut": true, "size": -1}])",
       "at /data/0/size: needs a whole number from 0 on"},
      {R"("data": [{"path": "C:\\T\\a", "text": "abc", "cut": true, "size": 2}])",
       "at /data/0/size: is less"},
      {R"("data": [{"path": "C:\\T\\a", "text": "", "cut": true, "size": 2000000000000}])",
       "at /data/0/size: is larger"},
      {R"("data": [{"path": "C:\\T\\a", "text": "", "modified": 1e300}])",
       "at /data/0/modified: needs a whole number"},
      {R"("data": [{"path": "C:\\T\\a", "text": "", "modified": -99999999999}])",
       "at /data/0/modified: is no time"},
      {R"("subfolders": [{"path": "C:\\", "refused": true}])", "at /subfolders/0: a whole drive"},
      {R"("subfolders": [{"path": "C:\\T\\NUL"}])", "at /subfolders/0/path: "},
      {R"("programs": [{"path": "C:\\T\\a", "size": -5}])", "at /programs/0/size: needs a whole number"},
      {R"("programs": [{"path": "C:\\T\\a", "kind": "moon"}])", "at /programs/0/kind: needs"},
      {R"("programs": [{"path": "C:\\T\\a", "kind": "icon"}])", "at /programs/0: an icon file has one icon"},
      {R"("programs": [{"path": "C:\\T\\a", "icons": [{"images": []}]}])", "at /programs/0/icons/0: an icon"},
      {R"("programs": [{"path": "C:\\T\\a", "icons": [{"images": [{"size": 0, "png": ""}]}]}])",
       "at /programs/0/icons/0/images/0/size: an image has 1 to 256"},
      {R"("programs": [{"path": "C:\\T\\a", "icons": [{"images": [{"size": -16, "png": ""}]}]}])",
       "at /programs/0/icons/0/images/0/size: needs"},
      {R"("programs": [{"path": "C:\\T\\a", "icons": [{"images": [{"size": 257, "png": ""}]}]}])",
       "at /programs/0/icons/0/images/0/size: is larger than 256"},
      {R"("programs": [{"path": "C:\\T\\a", "versions": [{"language": 70000, "codePage": 0, "values": {}}]}])",
       "at /programs/0/versions/0/language: is larger"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "values": [{"name": "a", "type": 1}]}])",
       "at /keys/0/values/0: needs one kind of content"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "values": [{"name": "a", "type": 3, "text": ""}]}])",
       "at /keys/0/values/0/text: only types 1 and 2"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "values": [{"name": "a", "type": 1, "number": 1}]}])",
       "at /keys/0/values/0/number: only type 4"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "values": [{"name": "a", "type": 4, "number": 4294967296}]}])",
       "at /keys/0/values/0/number: is larger"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "values": [{"name": "a", "type": -1, "hex": ""}]}])",
       "at /keys/0/values/0/type: needs"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "values": [{"name": "a", "type": 1, "text": "a\u0000b"}]}])",
       "at /keys/0/values/0/text: has a zero inside"},
      {R"("keys": [{"key": "HKEY_CURRENT_USER\\Software\\T", "view": "16"}])", "at /keys/0/view: needs"},
      {R"("missing": [1])", "at /missing/0: needs a text"},
  };
  for (const Fault& fault : faults)
    EXPECT_THAT(Refusal(CaptureText(fault.sections)), HasSubstr(fault.message)) << fault.sections;
  const Fault heads[] = {
      {R"("moon": 1)", "at /capture: unknown member 'moon'"},
      {R"("catalogue": "C:\\T\\none.xml")", "at /capture/catalogue: 'C:\\T\\none.xml' is not among"},
      {R"("catalogue": "C:\\T\\..\\none.xml")", "at /capture/catalogue: 'C:\\T\\..\\none.xml' has the name"},
      {R"("knownFolders": {"moon": "C:\\T"})", "at /capture/knownFolders: 'moon' is no known folder"},
      {R"("knownFolders": {"common data": "C:\\windows\\T"})", "at /capture/knownFolders/common data: "},
      {R"("environment": {"A=B": "x"})", "at /capture/environment: 'A=B' is no name"},
      {R"("environment": {"A": "x\u0000"})", "at /capture/environment/A: is no text of a variable"},
      {R"("environment": {"A": "", "a": ""})", "at /capture/environment: 'a' stands there twice"},
  };
  for (const Fault& fault : heads)
    EXPECT_THAT(Refusal(CaptureText("", fault.sections)), HasSubstr(fault.message)) << fault.sections;
}

std::string PictureRefusal(const std::string& picture, int size = 16) {
  return Refusal(CaptureText(R"("programs": [{"path": "C:\\T\\a", "icons": [{"images": [{"size": )" +
                             std::to_string(size) + R"(, "png": ")" + Base64(picture) + R"("}]}]}])"));
}

// A chunk with the sum of its bytes.
std::string Chunk(const std::string& type, const std::string& data) {
  uint32_t sum = 0xFFFFFFFF;
  for (const char byte : type + data) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
  }
  std::string chunk;
  AppendBigEndian32(chunk, static_cast<uint32_t>(data.size()));
  chunk += type + data;
  AppendBigEndian32(chunk, ~sum);
  return chunk;
}

// Zeros, packed without being made shorter, in pieces as long as the form allows.
std::string Stored(size_t length) {
  std::string packed = "\x78\x01";
  const uint32_t sum = static_cast<uint32_t>(length % 65521) << 16 | 1;
  for (size_t piece = 0; length > 0; length -= piece) {
    piece = std::min<size_t>(length, 0xFFFF);
    AppendByte(packed, piece == length ? 1 : 0);
    Append16(packed, static_cast<unsigned>(piece));
    Append16(packed, ~static_cast<unsigned>(piece));
    packed.append(piece, '\0');
  }
  AppendBigEndian32(packed, sum);
  return packed;
}

std::string Picture(const std::string& header, size_t pixelBytes) {
  return "\x89PNG\r\n\x1A\n" + Chunk("IHDR", header) + Chunk("IDAT", Stored(pixelBytes)) + Chunk("IEND", "");
}

TEST(DesktopCapture, RefusesPicturesThatAreNone) {
  const std::string good = PngBytes(16, 0x334455);
  const std::string place = "at /programs/0/icons/0/images/0/png: ";
  EXPECT_EQ(PictureRefusal(""), place + "is no PNG picture");
  EXPECT_EQ(PictureRefusal("GIF89a"), place + "is no PNG picture");
  for (size_t length = 8; length < good.size(); ++length)
    ASSERT_EQ(PictureRefusal(good.substr(0, length)), place + "is a PNG picture that is damaged or cut");
  EXPECT_EQ(PictureRefusal(good + "x"), place + "is a PNG picture that is damaged or cut");
  std::string spoilt = good;
  spoilt[good.find("IDAT") + 6] ^= 1;
  EXPECT_EQ(PictureRefusal(spoilt), place + "is a PNG picture that is damaged or cut");
  // Each of these has sums that fit: a palette of colours, and rows that are too few.
  const std::string header = std::string("\0\0\0\x10\0\0\0\x10\x08", 9);
  EXPECT_EQ(PictureRefusal(Picture(header + std::string("\3\0\0\0", 4), size_t{16} * 65)),
            place + "is no PNG picture of red, green, blue and alpha, 8 bits each");
  const std::string form = std::string("\6\0\0\0", 4);
  EXPECT_EQ(PictureRefusal(Picture(header + form, size_t{15} * 65)),
            place + "is a PNG picture whose pixels can't be unpacked");
  EXPECT_EQ(PictureRefusal(Picture(header + form, 1'000'000)),
            place + "is a PNG picture whose pixels can't be unpacked");
  EXPECT_EQ(PictureRefusal(Picture(header + form, size_t{16} * 65)), "nothing thrown");
  EXPECT_EQ(PictureRefusal(good, 32), place + "is a picture of 16 by 16 pixels, not of 32");
}

TEST(DesktopCapture, RefusesTextsThatWouldTakeAllMemory) {
  EXPECT_THAT(Refusal(std::string(1'000'000, '[')), HasSubstr("nested deeper than 64 levels"));
  std::string many = R"({"capture": {"version": 1}, "missing": [0)";
  for (int item = 0; item < 4'000'000; ++item) many += ",0";
  EXPECT_THAT(Refusal(many + "]}"), HasSubstr("some million values"));
}

TEST(DesktopCapture, ShortensAndTidiesWhatAMessageRepeats) {
  const std::string refusal = PathRefusal("C:\\a\n\x1b[31m" + std::string(100'000, 'x') + "\\..\\b");
  EXPECT_THAT(refusal,
              AllOf(HasSubstr("at /data/1/path: 'C:\\a??[31mxxx"), HasSubstr("xxx...' is too long")));
  EXPECT_THAT(Refusal(R"({"capture": {"version": 1}, ")" + std::string(100'000, 'x') + R"(": 1})"),
              HasSubstr("no section 'xxx"));
}

tests::ProgramResult RunDesktop(const std::vector<std::string>& arguments) {
  return tests::RunProgram("tarnwick-desktop.exe", arguments);
}

TEST(DesktopCaptureProgram, BuildsHoldsAndRemovesInTwoProcesses) {
  Desktop desktop;
  desktop.File(kFolder + R"(\m.json)",
               CaptureText(R"("subfolders": [{"path": "C:\\TarnwickTest\\Capture\\L", "refused": true}])"));
  const std::string state = kFolder + R"(\s.json)";
  const tests::ProgramResult built = RunDesktop({"build", kFolder + R"(\m.json)", "--state", state});
  EXPECT_EQ(built.exitCode, 0u) << built.errors;
  WIN32_FIND_DATAW found{};
  FindHandle listing(FindFirstFileW(Wide(kFolder + R"(\L\*)").c_str(), &found));
  EXPECT_FALSE(listing);
  EXPECT_TRUE(PathExists(kFolder + R"(\L)"));
  const tests::ProgramResult removed = RunDesktop({"remove", "--state", state});
  EXPECT_EQ(removed.exitCode, 0u) << removed.errors;
  EXPECT_FALSE(PathExists(kFolder + R"(\L)"));
}

TEST(DesktopCaptureProgram, RefusesAFileOfTwoHundredMegabytesUnread) {
  Desktop desktop;
  desktop.SparseFile(kFolder + R"(\long.json)", 200'000'000);
  const tests::ProgramResult built =
      RunDesktop({"build", kFolder + R"(\long.json)", "--state", kFolder + R"(\s.json)"});
  EXPECT_EQ(built.exitCode, 1u);
  EXPECT_EQ(built.errors,
            "tarnwick-desktop: 'C:\\TarnwickTest\\Capture\\long.json' is 190 MiB long; a "
            "description has at most 128 MiB\r\n");
  EXPECT_FALSE(PathExists(kFolder + R"(\s.json)"));
}

TEST(DesktopDescription, HoldsFoldersThatCannotBeListed) {
  const Desktop desktop = Build(R"({"heldFolders": ["C:\\TarnwickTest\\Capture\\Held\\"]})");
  std::error_code error;
  std::filesystem::directory_iterator listing(Wide(kFolder + R"(\Held)"), error);
  EXPECT_EQ(error, std::errc::permission_denied);
}

}  // namespace
}  // namespace tarnwick::desktop
