// A capture has what a scan asked for, nothing private, and no more applications than it must.
#include "host/capture/capture.h"

#include "common/wide_text.h"
#include "desktop/description.h"
#include "host/capture/capture_text.h"
#include "support/file_bytes.h"
#include "support/png_pixels.h"
#include "tarnwick/version.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <wincrypt.h>
#include <windows.h>
#include <algorithm>

namespace tarnwick {
namespace {

using namespace host;
using desktop::Desktop;
using desktop::View;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using Json = nlohmann::json;

constexpr char kCatalogue[] = R"(C:\TarnwickDemo\MasterGameList.xml)";
constexpr char kUninstall[] = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)";

void BuildSample(Desktop& desktop) {
  ApplyDescription(desktop, tests::ReadSource("desktop/samples/sample-desktop.json"));
}

void Build(Desktop& desktop, const Json& description) { ApplyDescription(desktop, description.dump()); }

Json Captured(bool withApps = false) {
  return Json::parse(CaptureJson(TakeCapture(kCatalogue, withApps, {}).machine));
}

// The item of a list whose member has this text, or null.
Json Item(const Json& list, const char* member, const std::string& text) {
  for (const Json& item : list) {
    if (item[member] == text) return item;
  }
  return nullptr;
}

std::string Bytes(const std::string& base64) {
  DWORD size = 0;
  CryptStringToBinaryA(base64.c_str(), 0, CRYPT_STRING_BASE64, nullptr, &size, nullptr, nullptr);
  std::string bytes(size, '\0');
  CryptStringToBinaryA(base64.c_str(), 0, CRYPT_STRING_BASE64, reinterpret_cast<BYTE*>(bytes.data()), &size,
                       nullptr, nullptr);
  return bytes;
}

Json OneGame(const Json& game) { return {{"path", kCatalogue}, {"games", {game}}}; }

class HostCapture : public testing::Test {
 protected:
  Desktop desktop_;
};

TEST_F(HostCapture, IsTheSameTwice) {
  BuildSample(desktop_);
  EXPECT_EQ(CaptureJson(TakeCapture(kCatalogue, false, {}).machine),
            CaptureJson(TakeCapture(kCatalogue, false, {}).machine));
}

TEST_F(HostCapture, HasTheCatalogueWhole) {
  BuildSample(desktop_);
  const Json capture = Captured();
  EXPECT_EQ(capture["capture"]["catalogue"], kCatalogue);
  EXPECT_EQ(Item(capture["data"], "path", kCatalogue)["text"], tests::ReadBytes(kCatalogue));
}

Json GameByValue(const std::string& key) {
  return OneGame({{"DisplayName", "Wren"},
                  {"RegistryKey", key},
                  {"RegistryPathKeyName", "Folder"},
                  {"DefaultExe", "wren.exe"}});
}

TEST_F(HostCapture, HasAValueOfOneViewThere) {
  const std::string key = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickTest\Wren)";
  Build(desktop_, {{"catalogue", GameByValue(key)}});
  desktop_.String(key, "folder", R"(C:\TarnwickTest\Wren)", View::k32);
  desktop_.Dword(key, "Other", 1, View::k32);
  const Json keys = Captured()["keys"];
  EXPECT_EQ(std::ranges::count_if(keys, [&](const Json& item) { return item["key"] == key; }), 1);
  const Json found = Item(keys, "key", key);
  ASSERT_TRUE(found.is_object());
  EXPECT_EQ(found["view"], "32");
  EXPECT_EQ(found["values"], Json::parse(R"([{"name":"folder","type":1,"text":"C:\\TarnwickTest\\Wren"}])"));
}

TEST_F(HostCapture, HasTheBytesOfATextThatIsOdd) {
  const std::string key = R"(HKEY_CURRENT_USER\Software\TarnwickTest\Wren)";
  Build(desktop_, {{"catalogue", GameByValue(key)}});
  desktop_.RawValue(key, "Folder", 1, std::string("A\0B", 3));
  const Json found = Item(Captured()["keys"], "key", key);
  ASSERT_TRUE(found.is_object());
  EXPECT_EQ(found["view"], "native");
  EXPECT_EQ(found["values"], Json::parse(R"([{"name":"Folder","type":1,"hex":"410042"}])"));
}

TEST_F(HostCapture, HasAProgramsVersionAndIconsButNotItsCode) {
  BuildSample(desktop_);
  const Json capture = Captured();
  const Json program = Item(capture["programs"], "path", R"(C:\Games\Lantern Harbour\lantern.exe)");
  ASSERT_TRUE(program.is_object());
  EXPECT_EQ(program["versions"][0]["values"]["FileDescription"], "Lantern Harbour");
  std::vector<int> sizes;
  for (const Json& image : program["icons"][0]["images"]) {
    sizes.push_back(image["size"]);
    const std::string png = Bytes(image["png"]);
    const tests::Picture picture = tests::DecodePng(png.data(), png.size());
    EXPECT_EQ(static_cast<int>(picture.width), sizes.back());
    EXPECT_EQ(picture.CentreRgb(), 0x1F77B4u);
  }
  EXPECT_THAT(sizes, ElementsAre(16, 32, 48, 256));
  EXPECT_TRUE(Item(capture["data"], "path", R"(C:\Games\Lantern Harbour\lantern.exe)").is_null());
}

TEST_F(HostCapture, TellsWhatIsMissing) {
  Build(desktop_, {{"catalogue", OneGame({{"DisplayName", "Wren"},
                                          {"RegistryKey", R"(HKEY_LOCAL_MACHINE\SOFTWARE\NoSuch\Wren)"},
                                          {"DefaultFolder", R"(C:\NoSuch\Wren)"},
                                          {"DefaultExe", "wren.exe"}})}});
  const std::vector<std::string> missing = Captured()["missing"];
  EXPECT_THAT(missing, testing::Contains(R"(HKEY_LOCAL_MACHINE\SOFTWARE\NoSuch\Wren)"));
  EXPECT_THAT(missing, testing::Contains(HasSubstr(R"(NoSuch\Wren\wren.exe)")));
}

TEST_F(HostCapture, CutsLongFilesAndNamesUnreadOnes) {
  BuildSample(desktop_);
  const std::string data = R"(C:\ProgramData\Epic\EpicGamesLauncher\Data\Manifests\long.item)";
  desktop_.SparseFile(data, kMostDataBytes + 5);
  const Json file = Item(Captured()["data"], "path", data);
  ASSERT_TRUE(file.is_object());
  EXPECT_EQ(file["cut"], true);
  EXPECT_EQ(file["size"], kMostDataBytes + 5);
  EXPECT_EQ(Bytes(file["base64"]).size(), kMostDataBytes);
}

TEST_F(HostCapture, LeavesOutApplicationsThatAreNoGames) {
  BuildSample(desktop_);
  const Capture capture = TakeCapture(kCatalogue, false, {});
  const std::string text = CaptureJson(capture.machine);
  EXPECT_THAT(text, Not(HasSubstr("fernpad")));
  EXPECT_THAT(text, Not(HasSubstr("Sprocket")));
  EXPECT_THAT(text, HasSubstr("Quillfeather_is1"));
  EXPECT_THAT(text, HasSubstr("Steam App "));
  EXPECT_GT(capture.counts.leftOut, 0u);
  EXPECT_THAT(CountsLine(capture), HasSubstr(" left out (--with-apps takes them)"));
}

TEST_F(HostCapture, TakesAllApplicationsWhereAsked) {
  BuildSample(desktop_);
  const Capture capture = TakeCapture(kCatalogue, true, {});
  EXPECT_THAT(CaptureJson(capture.machine), HasSubstr(R"(C:\\Program Files\\Fernpad\\fernpad.exe)"));
  EXPECT_EQ(capture.counts.leftOut, 0u);
  EXPECT_THAT(CountsLine(capture), Not(HasSubstr("left out")));
}

TEST_F(HostCapture, KeepsAnApplicationThatIsCalledLikeAGame) {
  Build(desktop_, {{"catalogue", OneGame({{"DisplayName", "Wren & Nest"}})}});
  desktop_.String(std::string(kUninstall) + "{1}", "DisplayName", "WREN & Nest\u2122", View::k64);
  desktop_.String(std::string(kUninstall) + "{2}", "DisplayName", "Wren", View::k64);
  const Json keys = Captured()["keys"];
  EXPECT_FALSE(Item(keys, "key", std::string(kUninstall) + "{1}").is_null());
  EXPECT_TRUE(Item(keys, "key", std::string(kUninstall) + "{2}").is_null());
}

std::string Utf16(const std::string& text) {
  const std::wstring wide = common::Wide(text);
  return {reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t)};
}

std::string Hex(const std::string& bytes) {
  std::string hex;
  for (const char byte : bytes) {
    hex += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
    hex += "0123456789abcdef"[byte & 15];
  }
  return hex;
}

// All texts of a capture, contents of files and bytes of values included.
std::string Everything(const Json& node) {
  std::string text;
  if (node.is_string()) return std::string(node) + '\n';
  if (!node.is_structured()) return {};
  for (const auto& item : node.items()) {
    if (node.is_object()) text += item.key() + '\n';
    const bool base64 = node.is_object() && item.key() == "base64";
    text += base64 ? Bytes(item.value()) : Everything(item.value());
  }
  return text;
}

// Names that no form of may be left, and a machine that has them in every place there is.
class HostCapturePrivacy : public HostCapture {
 protected:
  void SetUp() override {
    for (const std::string& user : {kLatin, kCyrillic}) BuildUser(user);
    Build(desktop_, {{"catalogue", OneGame({{"DisplayName", "Wren"},
                                            {"RegistryKey", kKey},
                                            {"RegistryPathKeyName", "Folder"},
                                            {"DefaultExe", "wren.exe"},
                                            {"DefaultFolder", R"(%userprofile%\Games\Wren)"}})}});
    desktop_.RawValue(kKey, "Folder", 1, Utf16("C:\\Users\\" + kLatin) + "x", View::k32);
    BuildLaunchers();
  }

  void BuildUser(const std::string& user) {
    const std::string games = "C:\\Users\\" + user + "\\Games\\";
    desktop_.Executable(games + "Wren\\wren.exe");
    desktop_.String(kKey, "Folder", games + "Wren", View::k64);
  }

  void BuildLaunchers() {
    const std::string items = R"(C:\ProgramData\Epic\EpicGamesLauncher\Data\Manifests\)";
    desktop_.File(items + "a.item",
                  R"({"DisplayName": "Nest", "AppName": "nest", "InstallLocation": "C:\\Users\\)" + kLatin +
                      R"(\\Games\\Nest", "by": "Zo\u00eb Kowalski", "u": "Zo%C3%AB%20Kowalski",)" +
                      R"( "mail": "zoe.k@mail.example.org", "accountId": "aabbccddeeff00112233",)" +
                      // In the midst of a text, where no field's name gives them away.
                      R"( "note": "ask wren.keeper@post.example.net or 76561198087654321 first"})");
    desktop_.File(items + "b.item",
                  Utf16("{\"who\": \"" + kCyrillic + "\", \"sid\": \"S-1-5-21-1004336348-77-88-1001\"}"));
    desktop_.String(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Valve\Steam)", "InstallPath", R"(C:\TarnwickTest\Steam)",
                    View::k32);
    desktop_.File(R"(C:\TarnwickTest\Steam\userdata\22202001\config\shortcuts.vdf)",
                  std::string("\1Owner\0", 7) + "76561198012345678");
    desktop_.Folder(R"(C:\TarnwickTest\Steam\steamapps)");
    desktop_.File(
        R"(C:\TarnwickTest\Steam\steamapps\appmanifest_5.acf)",
        "\"AppState\"\n{\n\t\"LastOwner\"\t\t\"76561198012345678\"\n\t\"AccountName\"\t\t\"pennywort\"\n"
        "\t\"who\" \"PENNYWORT 22202001\"\n}\n");
  }

  const std::string kLatin = "Zo\u00eb Kowalski";
  const std::string kCyrillic = "\u041b\u0438\u0441\u0438\u0447\u043a\u0430";
  const std::string kKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickTest\Wren)";
};

TEST_F(HostCapturePrivacy, LeavesNoPrivateThingInAnyForm) {
  const Json capture = Captured(true);
  const std::string text = Everything(capture);
  const std::string lower = common::Narrow(LowerText(common::Wide(text, common::Malformed::kReplaced)));
  for (const std::string name :
       {"kowalski", "\u043b\u0438\u0441\u0438\u0447\u043a\u0430", "zo\\u00eb", "%c3%ab", "zoe.k",
        "example.org", "1004336348", "22202001", "012345678", "pennywort", "aabbccddeeff00112233",
        "wren.keeper", "example.net", "087654321"})
    EXPECT_THAT(lower, Not(HasSubstr(name)));
  for (const std::string& name : {std::string("Kowalski"), kCyrillic}) {
    EXPECT_THAT(text, Not(HasSubstr(Utf16(name))));
    EXPECT_THAT(text, Not(HasSubstr(Hex(Utf16(name)))));
  }
}

TEST_F(HostCapturePrivacy, ShowsTheSameMachineWithStandIns) {
  const Json capture = Captured();
  const Json manifest = Item(capture["data"], "path", R"(C:\TarnwickTest\Steam\steamapps\appmanifest_5.acf)");
  EXPECT_THAT(std::string(manifest["text"]), HasSubstr("\"AccountName\"\t\t\"account01\""));
  EXPECT_THAT(std::string(manifest["text"]), HasSubstr("ACCOUNT01 10000001"));
  EXPECT_FALSE(
      Item(capture["data"], "path", R"(C:\TarnwickTest\Steam\userdata\10000001\config\shortcuts.vdf)")
          .is_null());
  std::vector<std::string> programs;
  for (const Json& program : capture["programs"]) programs.push_back(program["path"]);
  EXPECT_THAT(programs, testing::Contains(HasSubstr("\\Us\u00e9 Er000001\\Games\\Wren\\wren.exe")));
  EXPECT_THAT(
      programs,
      testing::Contains(HasSubstr("\\\u041f\u043e\u043b\u044c\u0437\u0430\u0431\\Games\\Wren\\wren.exe")));
}

TEST_F(HostCapturePrivacy, IsTheSameTwice) { EXPECT_EQ(Captured(true).dump(), Captured(true).dump()); }

TEST(HostCaptureText, HasALineForEachValueFileAndPicture) {
  MachineCopy machine;
  machine.catalogue = "C:\\a.xml";
  machine.drives = {"C:\\"};
  machine.keys.push_back({"HKEY_CURRENT_USER\\Software\\A",
                          RegistryView::kNative,
                          {{"n", 4, {}, 5, {}}, {"t", 2, "x", {}, {}}, {"b", 3, {}, {}, "\x0A\x0B"}}});
  machine.folders.push_back({"C:\\L", true});
  machine.data.push_back({"C:\\a.xml", "<a/>", false, 4, 12, false});
  machine.programs.push_back({"C:\\a.ico", 7, true, {}, {{{16, "PNG"}}}, {}});
  machine.missing = {"C:\\no"};
  EXPECT_EQ(CaptureJson(machine), R"({
 "capture": {
  "version": 1,
  "tarnwick": ")" TARNWICK_VERSION R"(",
  "catalogue": "C:\\a.xml",
  "knownFolders": {},
  "environment": {},
  "drives": [
   "C:\\"
  ]
 },
 "keys": [
  {"key": "HKEY_CURRENT_USER\\Software\\A", "view": "native", "values": [
   {"name": "n", "type": 4, "number": 5},
   {"name": "t", "type": 2, "text": "x"},
   {"name": "b", "type": 3, "hex": "0a0b"}
  ]}
 ],
 "subfolders": [
  {"path": "C:\\L", "refused": true}
 ],
 "data": [
  {"path": "C:\\a.xml", "text": "<a/>", "modified": 12}
 ],
 "programs": [
  {"path": "C:\\a.ico", "kind": "icon", "size": 7, "versions": [], "icons": [
   {"images": [
    {"size": 16, "png": "UE5H"}
   ]}
  ]}
 ],
 "missing": [
  "C:\\no"
 ]
}
)");
  EXPECT_EQ(CaptureList(machine), R"(key                10  HKEY_CURRENT_USER\Software\A
folder              0  C:\L
file                4  C:\a.xml
icon                3  C:\a.ico
missing             0  C:\no
)");
}

}  // namespace
}  // namespace tarnwick
