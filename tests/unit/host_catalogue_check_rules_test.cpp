#include "host/catalogue/check_rules.h"

#include "host/catalogue/check_text.h"
#include "support/catalogue_text_parts.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::CatalogueOf;
using tests::Element;
using tests::GoodRecord;
using tests::RecordOf;
using Checks = std::vector<Check>;

std::vector<Finding> FindingsOf(const std::string& records) { return CheckText(CatalogueOf(records)).list; }

Checks ChecksOf(const std::string& records) {
  Checks checks;
  for (const Finding& finding : FindingsOf(records)) checks.push_back(finding.check);
  return checks;
}

std::string MessageOf(const std::string& records) {
  const std::vector<Finding> findings = FindingsOf(records);
  return findings.empty() ? std::string() : findings.front().message;
}

// What stands at the only finding's place.
std::string TextAt(const std::string& records) {
  const std::vector<Finding> findings = FindingsOf(records);
  return findings.size() == 1 ? CatalogueOf(records).substr(findings.front().at) : std::string();
}

const std::string kExe = Element("DefaultExe", "fernpad.exe");
const std::string kName = Element("DisplayName", "Fernpad");

std::string SteamRecord(const std::string& more) {
  return RecordOf(kExe + kName + Element("SourceEx", "Steam") + more);
}

TEST(CatalogueCheckRules, AGoodRecordIsClean) { EXPECT_THAT(FindingsOf(GoodRecord()), IsEmpty()); }

TEST(CatalogueCheckRules, TC002RecordThatRunsIntoTheNextIsToldOnce) {
  const std::string open = "<GameSignature>" + kName;
  EXPECT_THAT(ChecksOf(open + GoodRecord()), ElementsAre(kRecordNotClosed));
  EXPECT_EQ(TextAt(open + GoodRecord()).find(open), 0u);
}

TEST(CatalogueCheckRules, TC004AnElementBehindALongerNameSaysWhatTheFieldBecomes) {
  const std::string record = RecordOf(Element("DefaultExe32", "a.exe") + Element("DefaultExe", "b.exe") +
                                      kName + Element("DefaultFolder", "C:\\G"));
  EXPECT_THAT(ChecksOf(record), ElementsAre(kSwallowedElement));
  EXPECT_THAT(MessageOf(record), HasSubstr("DefaultExe becomes 'a.exe</DefaultExe32><DefaultExe>b.exe'"));
  EXPECT_THAT(TextAt(record), testing::StartsWith("<DefaultExe>b.exe"));
}

TEST(CatalogueCheckRules, TC004HoldsForEachFamilyOfNames) {
  const std::vector<std::pair<std::string, std::string>> pairs = {{"DefaultFolderExe", "DefaultFolder"},
                                                                  {"DefaultFolderExe64", "DefaultFolderExe"},
                                                                  {"DefaultFolder32", "DefaultFolder"},
                                                                  {"SourceExId", "SourceEx"},
                                                                  {"DefaultExecutable", "DefaultExe"}};
  for (const auto& [longer, shorter] : pairs) {
    const std::string record = RecordOf(Element(longer, "1") + Element(shorter, "GOG"));
    EXPECT_THAT(ChecksOf(record), testing::Contains(kSwallowedElement)) << longer;
  }
}

TEST(CatalogueCheckRules, TC004ANilElementOfALongerNameEmptiesTheField) {
  const std::string record = GoodRecord("<SourceExId i:nil=\"true\"/>" + Element("SourceEx", "GOG"));
  EXPECT_THAT(ChecksOf(record), ElementsAre(kSwallowedElement));
  EXPECT_THAT(MessageOf(record), HasSubstr("SourceEx becomes ''"));
}

TEST(CatalogueCheckRules, TC004IsNotToldWhereTheFieldStaysTheSame) {
  EXPECT_THAT(ChecksOf(GoodRecord("<SourceExId i:nil=\"true\"/><SourceEx i:nil=\"true\"/>")), IsEmpty());
}

TEST(CatalogueCheckRules, TC009SourceThatIsNone) {
  for (const char* source : {"GOG Galaxy", "4", "&#83;TEAM", "Steam2"})
    EXPECT_THAT(ChecksOf(GoodRecord(Element("SourceEx", source))), ElementsAre(kNoSource)) << source;
  for (const char* source : {"GOG", "gogGalaxy", "Battle.net", "Origin", "direct", ""})
    EXPECT_THAT(ChecksOf(GoodRecord(Element("SourceEx", source))), IsEmpty()) << source;
}

TEST(CatalogueCheckRules, TC010SteamWithoutId) {
  EXPECT_THAT(ChecksOf(SteamRecord("")), ElementsAre(kSteamWithoutId));
}

TEST(CatalogueCheckRules, TC011SteamIdThatIsNoNumber) {
  for (const char* id : {"app/570", "-1", "0570", "5 70", "99999999999", "570x"})
    EXPECT_THAT(ChecksOf(SteamRecord(Element("SourceExId", id))), ElementsAre(kSteamIdNoNumber)) << id;
  for (const char* id : {"570", "10", "4294967295"})
    EXPECT_THAT(ChecksOf(SteamRecord(Element("SourceExId", id))), IsEmpty()) << id;
}

TEST(CatalogueCheckRules, TC012UwpWithoutGameInfo) {
  const std::string record = kExe + kName + Element("SourceEx", "UWP");
  EXPECT_THAT(ChecksOf(RecordOf(record)), ElementsAre(kStoreWithoutFamily));
  EXPECT_THAT(ChecksOf(RecordOf(kName + Element("SourceEx", "UWP") + Element("GameInfo", "A_b"))), IsEmpty());
}

TEST(CatalogueCheckRules, TC013RecordWithoutName) {
  EXPECT_THAT(ChecksOf(RecordOf(kExe + Element("DefaultFolder", "C:\\G"))), ElementsAre(kNoName));
  EXPECT_THAT(ChecksOf(RecordOf("")), ElementsAre(kNoName, kNeverTested));
}

TEST(CatalogueCheckRules, TC014RecordThatNoStrategyTestsSaysWhatItLacks) {
  EXPECT_THAT(ChecksOf(RecordOf(kExe + kName)), ElementsAre(kNeverTested));
  EXPECT_THAT(MessageOf(RecordOf(kExe + kName)),
              HasSubstr("DefaultFolder or DefaultFolder32 (Default Exe Search)"));
}

TEST(CatalogueCheckRules, TC103RecordTagInsideOfARecord) {
  EXPECT_THAT(ChecksOf(GoodRecord("<GameSignature id=\"1\"/>")), ElementsAre(kSkippedRecord));
}

TEST(CatalogueCheckRules, TC104ElementsThatTheLibrarySkipsOrCuts) {
  for (const char* element :
       {"<RunningExe i:nil=\"true\">a.exe</RunningExe>", "<RunningExe x=\"1>0\">a.exe</RunningExe>",
        "<RunningExe x='a/>b'>a.exe</RunningExe>", "<RunningExe>a.exe</RunningExe >"})
    EXPECT_THAT(ChecksOf(GoodRecord(element)), ElementsAre(kSkippedElement)) << element;
  for (const char* element :
       {"<RunningExe i:nil=\"true\"/>", "<RunningExe i:nil=\"true\"> </RunningExe>",
        "<RunningExe x=\"1\">a.exe</RunningExe>", "<RunningExe/>", "<RunningExe></RunningExe>"})
    EXPECT_THAT(ChecksOf(GoodRecord(element)), testing::Not(testing::Contains(kSkippedElement))) << element;
}

TEST(CatalogueCheckRules, TC105ReferencesThatStayInTheText) {
  for (const char* name : {"A&nbsp;B", "A &amp;amp; B", "A&#xZZ;", "&hellip;"})
    EXPECT_THAT(ChecksOf(GoodRecord("", name)), ElementsAre(kEntityLeft)) << name;
  for (const char* name : {"A &amp; B", "&#65;", "A&#x41;B", "A & B; C"})
    EXPECT_THAT(ChecksOf(GoodRecord("", name)), IsEmpty()) << name;
}

TEST(CatalogueCheckRules, TC106WhiteSpaceThatIsTrimmedOrCollapsed) {
  for (const char* name : {" A", "A ", "A  B", "A\n  B", "A\tB"})
    EXPECT_THAT(ChecksOf(GoodRecord("", name)), ElementsAre(kWhiteSpace)) << name;
  EXPECT_THAT(MessageOf(GoodRecord("", "A\n  B")), HasSubstr("DisplayName is read as 'A B'"));
}

TEST(CatalogueCheckRules, TC107UnknownElements) {
  for (const char* name : {"Publisher", "displayname", "x:DisplayName", "Game"})
    EXPECT_THAT(ChecksOf(GoodRecord(Element(name, "x"))), ElementsAre(kUnknownElement)) << name;
}

TEST(CatalogueCheckRules, TC108GuidWithBraces) {
  EXPECT_THAT(ChecksOf(GoodRecord(Element("GameGUID", "{3F2504E0-4F89-11D3-9A0C-0305E82C3301}"))),
              ElementsAre(kGuidBraces));
  EXPECT_THAT(ChecksOf(GoodRecord(Element("GameGUID", "3F2504E0-4F89-11D3-9A0C-0305E82C3301"))), IsEmpty());
}

TEST(CatalogueCheckRules, TC109RegistryKeysWithoutAKnownHive) {
  for (const char* key : {"HKLM\\SOFTWARE\\A", "SOFTWARE\\A", "HKEY_LOCAL_MACHINE", "hkey_local_machine\\A",
                          "HKEY_LOCAL_MACHINE/A", "HKEY_CURRENT_CONFIG\\A"}) {
    const bool whole = std::string(key) == "HKEY_LOCAL_MACHINE";
    EXPECT_EQ(ChecksOf(GoodRecord(Element("RegistryKey", key))), whole ? Checks{} : Checks{kRegistryHive})
        << key;
  }
  EXPECT_THAT(MessageOf(GoodRecord(Element("RegistryKey", "HKCU\\A"))), HasSubstr("HKEY_CURRENT_USER"));
}

TEST(CatalogueCheckRules, TC110FolderThatIsADriveAlone) {
  for (const char* folder : {"C:", "D:\\", "d:/"})
    EXPECT_THAT(ChecksOf(GoodRecord(Element("DefaultFolder32", folder))), ElementsAre(kDriveAlone)) << folder;
  EXPECT_THAT(ChecksOf(GoodRecord(Element("DefaultFolder64", "C:\\G"))), IsEmpty());
}

TEST(CatalogueCheckRules, TC111VariableThatEatsTheCharacterBehindIt) {
  for (const char* folder : {"%ProgramFiles%\\A", "%ProgramFiles%/A", "%ProgramFiles%A"})
    EXPECT_THAT(ChecksOf(GoodRecord(Element("DefaultFolder64", folder))), ElementsAre(kEatenBackslash))
        << folder;
  for (const char* folder :
       {"%PROGRAMFILES%\\A", "%ProgramFiles(x86)%\\A", "%ProgramFiles%\\\\A", "%ProgramFiles%"})
    EXPECT_THAT(ChecksOf(GoodRecord(Element("DefaultFolder64", folder))), IsEmpty()) << folder;
}

TEST(CatalogueCheckRules, TC112ExecutableOfManyGames) {
  for (const char* exe : {"setup.exe", "Launcher.EXE", "GAME.exe", "start.exe"})
    EXPECT_THAT(ChecksOf(GoodRecord(Element("DefaultExe64", exe))), ElementsAre(kCommonExe)) << exe;
  for (const char* exe : {"bin\\game.exe", "gamesetup.exe", "fernlauncher.exe"})
    EXPECT_THAT(ChecksOf(GoodRecord(Element("DefaultExe64", exe))), IsEmpty()) << exe;
}

std::string WithUrl(const std::string& source, const std::string& url) {
  return GoodRecord(Element("SourceEx", source) + Element("SourceExId", "570") + Element("LaunchUrl", url));
}

TEST(CatalogueCheckRules, TC113UrlOfAnotherSource) {
  EXPECT_THAT(ChecksOf(WithUrl("GOG", "steam://run/570")), ElementsAre(kForeignUrl));
  EXPECT_THAT(ChecksOf(WithUrl("EPIC", "goggalaxy://openGameView/1")), ElementsAre(kForeignUrl));
  EXPECT_THAT(ChecksOf(WithUrl("STEAM", "steam://run/571")), ElementsAre(kForeignUrl));
  EXPECT_THAT(ChecksOf(WithUrl("BETHESDA", "bethesdanet://run/")), ElementsAre(kForeignUrl));
  EXPECT_THAT(ChecksOf(WithUrl("EPIC", "com.epicgames.launcher://apps/Fern")), ElementsAre(kForeignUrl));
  EXPECT_THAT(ChecksOf(WithUrl("EPIC", "com.epicgames.launcher://apps/F?action=launch&amp;silent=false")),
              ElementsAre(kForeignUrl));
  EXPECT_THAT(ChecksOf(WithUrl("STEAM", "steam://run/570")), IsEmpty());
  EXPECT_THAT(ChecksOf(WithUrl("EPIC", "com.epicgames.launcher://apps/F?action=launch&amp;silent=true")),
              IsEmpty());
  EXPECT_THAT(ChecksOf(WithUrl("BETHESDA", "bethesdanet://run/7")), IsEmpty());
  EXPECT_THAT(ChecksOf(WithUrl("MIHOYO", "hyp-global://launchgame?gamebiz=x")), IsEmpty());
}

TEST(CatalogueCheckRules, TC114UrlThatHidesASteamRecordFromTheRegistrySearch) {
  const std::string key =
      Element("RegistryKey", "HKEY_LOCAL_MACHINE\\SOFTWARE\\A") + Element("SourceExId", "570");
  const std::string value = Element("RegistryPathKeyName", "Path");
  const std::string url = Element("LaunchUrl", "steam://run/570");
  EXPECT_THAT(ChecksOf(SteamRecord(key + value + url)), ElementsAre(kHidingUrl));
  EXPECT_THAT(ChecksOf(SteamRecord(key + url)), IsEmpty());
  EXPECT_THAT(ChecksOf(SteamRecord(key + value)), IsEmpty());
}

TEST(CatalogueCheckRules, TC115ElementThatStandsTwice) {
  EXPECT_THAT(ChecksOf(GoodRecord(Element("DefaultExe", "b.exe"))), ElementsAre(kRepeatedElement));
}

TEST(CatalogueCheckRules, TC116MarkupThatStaysInTheText) {
  for (const char* name : {"A<!-- x -->B", "<![CDATA[A]]>", "A<b>B</b>"})
    EXPECT_THAT(ChecksOf(GoodRecord("", name)), testing::Contains(kMarkupInText)) << name;
}

TEST(CatalogueCheckRules, FindingsBearTheRecordsNameShortened) {
  const std::string name(1000, 'x');
  const std::vector<Finding> findings = FindingsOf(RecordOf(kExe + Element("DisplayName", name)));
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(findings.front().record, std::string(120, 'x') + "...");
}

}  // namespace
}  // namespace tarnwick::host
