// Which questions tell of a game, why questions got nothing, and what was merged into what.
#include "host/explain/scan_evidence.h"

#include "core/merge.h"
#include "host/explain/question_words.h"
#include "host/explain/scan_findings.h"

#include <gmock/gmock.h>

namespace tarnwick::host {
namespace {

using common::Heard;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Heard Asked(QuestionKind kind, const std::string& subject, const std::string& answer = "yes",
            const std::string& detail = "") {
  return {{kind, subject, detail, RegistryView::kNative, "A Search"}, {true, answer}, 0};
}

Heard Missed(const std::string& path) {
  return {{QuestionKind::kAttributes, path, "", RegistryView::kNative, "A Search"}, {false, "error 2"}, 0};
}

ScanResult Result(const std::string& name, const std::string& path, const std::string& source = "",
                  const std::string& url = "") {
  return {name, path, url, source, "", true, kSourceNone, ""};
}

std::vector<std::string> Subjects(const Evidence& evidence) {
  std::vector<std::string> subjects;
  for (const Heard* heard : evidence) subjects.push_back(heard->question.subject);
  return subjects;
}

std::vector<std::string> EvidenceOf(const ScanResult& result, const std::vector<Heard>& heard,
                                    size_t most = kMostEvidence) {
  return Subjects(EvidenceFor(heard, {&result}, most).at(0));
}

// Is this question evidence for the game, with another one beside it that isn't?
bool IsEvidence(const ScanResult& result, const Heard& heard) {
  const std::vector<Heard> all = {Missed("D:\\elsewhere\\other.exe"), heard};
  return EvidenceOf(result, all) == std::vector<std::string>{heard.question.subject};
}

const ScanResult kMill = Result("Old Mill", "C:\\Games\\Mill\\bin\\mill.exe",
                                "Some Registry: HKEY_LOCAL_MACHINE\\SOFTWARE\\Mill Works", "steam://run/77");

TEST(HostScanEvidence, IsWhatWasAskedAboutThePathItsFolderAndWhatLiesInThat) {
  for (const char* path : {"C:\\Games\\Mill\\bin\\mill.exe", "c:/games/MILL/bin/mill.exe",
                           "C:\\\\Games\\\\Mill\\bin", "C:\\Games\\Mill\\bin\\other.exe"}) {
    EXPECT_TRUE(IsEvidence(kMill, Asked(QuestionKind::kAttributes, path))) << path;
    EXPECT_TRUE(IsEvidence(kMill, Missed(path))) << path;
  }
  EXPECT_FALSE(IsEvidence(kMill, Missed("C:\\Games\\Mill Two\\bin\\mill.exe")));
  EXPECT_FALSE(IsEvidence(kMill, Missed("C:\\Games")));
}

TEST(HostScanEvidence, IsWhatWasAskedOfTheKeyInTheSource) {
  EXPECT_TRUE(IsEvidence(kMill, Asked(QuestionKind::kOpenKey, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Mill Works")));
  EXPECT_TRUE(IsEvidence(
      kMill, Asked(QuestionKind::kReadValue, "HKEY_LOCAL_MACHINE\\Software\\mill works\\1", "x", "Path")));
  EXPECT_FALSE(
      IsEvidence(kMill, Asked(QuestionKind::kOpenKey, "HKEY_LOCAL_MACHINE\\SOFTWARE\\Mill Works 2")));
  EXPECT_FALSE(IsEvidence(kMill, Asked(QuestionKind::kOpenKey, "HKEY_LOCAL_MACHINE\\SOFTWARE")));
}

TEST(HostScanEvidence, IsWhatWasAnsweredWithThePathTheNameOrTheId) {
  for (const char* answer :
       {"Old Mill", "A\nold mill\nB", "\"C:\\Games\\Mill\\bin\\mill.exe\",0",
        "C:\\Games\\Mill\\bin\\mill.exe,0", "{\"path\": \"C:\\\\Games\\\\Mill\\\\bin\"}",
        "name: Old Mill\r\n", "Title=Old Mill", "<t>Old Mill</t>", "\"appid\"\t\t\"77\""}) {
    EXPECT_TRUE(IsEvidence(kMill, Asked(QuestionKind::kReadTextFile, "C:\\list.txt", answer))) << answer;
  }
  EXPECT_TRUE(
      IsEvidence(kMill, Asked(QuestionKind::kReadBinaryFile, "C:\\b", std::string("\1Old Mill\0\2", 11))));
  for (const char* answer : {"Old Mill Two", "177", "Mill", ""})
    EXPECT_FALSE(IsEvidence(kMill, Asked(QuestionKind::kReadTextFile, "C:\\list.txt", answer))) << answer;
}

TEST(HostScanEvidence, IsWhatHasTheIdInTheSource) {
  const ScanResult game = Result("A", "", "Battle.net: grimtide");
  EXPECT_TRUE(IsEvidence(game, Asked(QuestionKind::kReadValue, "HKEY_CURRENT_USER\\Software\\grimtide")));
}

TEST(HostScanEvidence, EmptyTextsAndDriveRootsFitNothing) {
  EXPECT_FALSE(IsEvidence(Result("", "", "", ""), Asked(QuestionKind::kAttributes, "", "")));
  EXPECT_FALSE(IsEvidence(Result("", "C:\\a.exe"), Asked(QuestionKind::kAttributes, "C:\\b.exe", "C:\\")));
}

TEST(HostScanEvidence, StandsInTheOrderOfTheAnswersAndOnceEach) {
  const std::vector<Heard> heard = {Asked(QuestionKind::kReadTextFile, "C:\\list.txt", "Old Mill"),
                                    Missed(kMill.exePath),
                                    Asked(QuestionKind::kAttributes, kMill.exePath, "file"),
                                    Asked(QuestionKind::kAttributes, kMill.exePath, "file", "narrow")};
  EXPECT_THAT(EvidenceOf(kMill, heard), ElementsAre("C:\\list.txt", kMill.exePath, kMill.exePath));
}

TEST(HostScanEvidence, OfTooMuchTheSurestStays) {
  std::vector<Heard> heard;
  for (int i = 0; i < 20; ++i)
    heard.push_back(Asked(QuestionKind::kReadTextFile, "C:\\" + std::to_string(i), "Old Mill"));
  heard.push_back(Missed("C:\\Games\\Mill\\bin\\b.exe"));
  heard.push_back(Asked(QuestionKind::kAttributes, kMill.exePath, "file"));
  EXPECT_THAT(EvidenceOf(kMill, heard, 3),
              ElementsAre("C:\\0", "C:\\Games\\Mill\\bin\\b.exe", kMill.exePath));
  EXPECT_THAT(EvidenceOf(kMill, heard), SizeIs(kMostEvidence));
}

TEST(HostScanEvidence, EachGameHasItsOwn) {
  const ScanResult other = Result("Other", "D:\\Other\\o.exe");
  const std::vector<Heard> heard = {Asked(QuestionKind::kReadTextFile, "C:\\all.txt", "Other\nOld Mill"),
                                    Missed(kMill.exePath), Missed(other.exePath)};
  const std::vector<Evidence> evidence = EvidenceFor(heard, {&kMill, &other});
  ASSERT_THAT(evidence, SizeIs(2));
  EXPECT_THAT(Subjects(evidence[0]), ElementsAre("C:\\all.txt", kMill.exePath));
  EXPECT_THAT(Subjects(evidence[1]), ElementsAre("C:\\all.txt", other.exePath));
}

TEST(HostScanEvidence, ReasonsAreCountedTheMostFrequentFirst) {
  const std::vector<Heard> heard = {Missed("C:\\a"), Missed("C:\\b"),
                                    Asked(QuestionKind::kAttributes, "C:\\c"), Missed("C:\\b"),
                                    Missed("C:\\d")};
  const std::vector<MissReason> reasons = MissReasons(heard);
  ASSERT_THAT(reasons, SizeIs(3));
  EXPECT_EQ(reasons[0].text, MissInWords(Missed("C:\\b")));
  EXPECT_EQ(reasons[0].count, 2u);
  EXPECT_EQ(reasons[1].text, MissInWords(Missed("C:\\a")));
  EXPECT_EQ(reasons[2].text, MissInWords(Missed("C:\\d")));
}

// A scan in which the first strategy found these, the second those.
ObservedScan ScanOf(const ScanResults& first, const ScanResults& second) {
  ObservedScan scan;
  scan.runs = {{{"First", 6, nullptr}, {}, first, {}, {}}, {{"Second", 0, nullptr}, {}, second, {}, {}}};
  for (const StrategyRun& run : scan.runs)
    scan.all.insert(scan.all.end(), run.results.begin(), run.results.end());
  scan.unique = MergeResults(scan.all);
  return scan;
}

std::vector<std::string> WhysOf(const GameFinding& finding) {
  std::vector<std::string> whys;
  for (const MergedResult& merged : finding.merged)
    whys.push_back(merged.run->strategy.name + "/" + merged.result->name + ": " + merged.why);
  return whys;
}

TEST(HostScanFindings, NameTheStrategyWhoseResultStands) {
  const ObservedScan scan = ScanOf({Result("A", "C:\\a.exe")}, {Result("B", "C:\\b.exe")});
  const std::vector<GameFinding> findings = FindingsOf(scan);
  ASSERT_THAT(findings, SizeIs(2));
  EXPECT_EQ(findings[0].run->strategy.name, "First");
  EXPECT_EQ(findings[1].run->strategy.name, "Second");
  EXPECT_THAT(findings[0].merged, IsEmpty());
}

TEST(HostScanFindings, HaveTheEvidenceOfThatStrategyAlone) {
  ObservedScan scan = ScanOf({Result("A", "C:\\a\\a.exe")}, {Result("B", "C:\\b\\b.exe")});
  scan.runs[0].heard = {Missed("C:\\a\\a.exe"), Missed("C:\\b\\b.exe")};
  scan.runs[1].heard = {Missed("C:\\b\\c.exe"), Missed("C:\\a\\a.exe")};
  const std::vector<GameFinding> findings = FindingsOf(scan);
  EXPECT_THAT(Subjects(findings[0].evidence), ElementsAre("C:\\a\\a.exe"));
  EXPECT_THAT(Subjects(findings[1].evidence), ElementsAre("C:\\b\\c.exe"));
}

TEST(HostScanFindings, TellOfAResultOfTheSamePath) {
  const ObservedScan scan = ScanOf({Result("A", "C:\\a.exe"), Result("B", "C:\\b.exe")},
                                   {Result("A2", "C:\\a.exe"), Result("A3", "c:\\a.exe")});
  const std::vector<GameFinding> findings = FindingsOf(scan);
  ASSERT_THAT(findings, SizeIs(3));
  EXPECT_THAT(WhysOf(findings[0]), ElementsAre("Second/A2: same path, found later"));
  EXPECT_THAT(WhysOf(findings[1]), IsEmpty());
}

TEST(HostScanFindings, TellOfAResultOfTheSameAppIdWithItsRank) {
  const ObservedScan scan = ScanOf({Result("Low", "C:\\1.exe", "Steam ID: 7", "steam://run/7")},
                                   {Result("High", "C:\\2.exe", "Steam App 7", "steam://run/7"),
                                    Result("Equal", "C:\\3.exe", "Steam App 7", "steam://run/7"),
                                    Result("Other", "C:\\4.exe", "Steam App 8", "steam://run/8")});
  const std::vector<GameFinding> findings = FindingsOf(scan);
  ASSERT_THAT(findings, SizeIs(2));
  EXPECT_EQ(findings[0].result->name, "High");
  EXPECT_EQ(findings[0].run->strategy.name, "Second");
  EXPECT_THAT(WhysOf(findings[0]),
              ElementsAre("First/Low: same Steam app id 7, source of rank 2 below 4",
                          "Second/Equal: same Steam app id 7, found later with a source of equal rank"));
}

TEST(HostScanFindings, LeaveStandingWhatTheLibraryLeavesStanding) {
  // A Steam result doesn't look at paths; one that is found before it has its own entry.
  const ObservedScan scan = ScanOf({Result("Plain", "C:\\1.exe")},
                                   {Result("Steam", "C:\\1.exe", "Steam App 7", "steam://run/7"),
                                    Result("URI 1", "", "", "x://1"), Result("URI 2", "", "", "x://1")});
  const std::vector<GameFinding> findings = FindingsOf(scan);
  ASSERT_THAT(findings, SizeIs(4));
  for (const GameFinding& finding : findings) EXPECT_THAT(finding.merged, IsEmpty());
}

TEST(HostScanFindings, TellNothingOfWhatTheLibraryMergedElsewhere) {
  // The second was dropped before its path could count, so the third stands.
  const ObservedScan scan = ScanOf({Result("High", "C:\\1.exe", "Steam App 7", "steam://run/7"),
                                    Result("Low", "C:\\2.exe", "Steam ID: 7", "steam://run/7")},
                                   {Result("Plain", "C:\\2.exe")});
  const std::vector<GameFinding> findings = FindingsOf(scan);
  ASSERT_THAT(findings, SizeIs(2));
  EXPECT_THAT(WhysOf(findings[0]), ElementsAre("First/Low: same Steam app id 7, source of rank 2 below 4"));
  EXPECT_THAT(WhysOf(findings[1]), IsEmpty());
}

TEST(HostScanFindings, FollowWhatWasMergedIntoSomethingThatWasReplaced) {
  const ObservedScan scan =
      ScanOf({Result("Low", "C:\\1.exe", "Steam ID: 7", "steam://run/7"), Result("Plain", "C:\\1.exe")},
             {Result("High", "C:\\2.exe", "Steam App 7", "steam://run/7")});
  const std::vector<GameFinding> findings = FindingsOf(scan);
  ASSERT_THAT(findings, SizeIs(1));
  EXPECT_THAT(WhysOf(findings[0]), ElementsAre("First/Low: same Steam app id 7, source of rank 2 below 4",
                                               "First/Plain: same path, found later"));
}

TEST(HostScanFindings, TellEqualResultsApart) {
  const ScanResult twin = Result("A", "C:\\a.exe");
  const std::vector<GameFinding> findings = FindingsOf(ScanOf({twin}, {twin, twin}));
  ASSERT_THAT(findings, SizeIs(1));
  EXPECT_THAT(findings[0].merged, SizeIs(2));
}

}  // namespace
}  // namespace tarnwick::host
