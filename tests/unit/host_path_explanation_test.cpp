// What leads to a path, told of the sample desktop.
#include "host/explain/path_explanation.h"

#include "desktop/description.h"
#include "support/debug_capture.h"
#include "support/file_bytes.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace tarnwick {
namespace {

using desktop::Desktop;
using host::ExplainPath;
using host::ObservedScan;
using host::ObserveScan;
using host::PathExplanation;
using host::PathKind;
using host::RecordLead;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr char kLantern[] = R"(C:\Games\Lantern Harbour\lantern.exe)";

// One scan of the sample desktop serves all; none of them changes it.
class HostPathExplanation : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    desktop_ = std::make_unique<Desktop>();
    ApplyDescription(*desktop_, tests::ReadSource("desktop/samples/sample-desktop.json"));
    desktop_->Executable(R"(C:\Games\Attic\attic.exe)", {{{{{32, 0x3366CC}}}}, {}, 0});
    scan_ = std::make_unique<ObservedScan>(ObserveScan(R"(C:\TarnwickDemo\MasterGameList.xml)", {}));
  }
  static void TearDownTestSuite() {
    scan_.reset();
    desktop_.reset();
  }

  static PathExplanation Explained(const std::string& path) { return ExplainPath(path, *scan_); }

  static std::unique_ptr<Desktop> desktop_;
  static std::unique_ptr<ObservedScan> scan_;
};

std::unique_ptr<Desktop> HostPathExplanation::desktop_;
std::unique_ptr<ObservedScan> HostPathExplanation::scan_;

std::vector<std::string> StrategiesOf(const PathExplanation& explanation) {
  std::vector<std::string> names;
  for (const host::StrategyLead& lead : explanation.strategies) names.push_back(lead.strategy);
  return names;
}

TEST_F(HostPathExplanation, AFoundExecutableHasItsRecordItsStrategyAndItsIcon) {
  const PathExplanation explanation = Explained(kLantern);
  EXPECT_EQ(explanation.kind, PathKind::kFile);
  EXPECT_TRUE(explanation.inScan);
  EXPECT_TRUE(IsFound(explanation));
  EXPECT_THAT(explanation.records, Contains(AllOf(Field(&RecordLead::record, "Lantern Harbour"),
                                                  Field(&RecordLead::strategy, "Default Registry Scan"),
                                                  Field(&RecordLead::found, true))));
  EXPECT_THAT(StrategiesOf(explanation), Contains("Default Registry Scan"));
  EXPECT_EQ(explanation.icon.file, kLantern);
  EXPECT_EQ(explanation.icon.call, "PrivateExtractIconsW #0 at 256 pixels");
  EXPECT_THAT(PathExplanationText(explanation),
              HasSubstr("  record 'Lantern Harbour': found by Default Registry Scan\n"));
}

TEST_F(HostPathExplanation, CaseAndSlashesDoNotCount) {
  EXPECT_EQ(Explained("c:/games/LANTERN harbour/Lantern.EXE").records.size(),
            Explained(kLantern).records.size());
  EXPECT_TRUE(Explained("c:/games/LANTERN harbour/Lantern.EXE").inScan);
}

TEST_F(HostPathExplanation, AFolderStandsForWhatIsBelow) {
  const PathExplanation explanation = Explained(R"(C:\Games\Lantern Harbour\)");
  EXPECT_EQ(explanation.kind, PathKind::kFolder);
  EXPECT_THAT(explanation.records, Contains(Field(&RecordLead::record, "Lantern Harbour")));
  EXPECT_EQ(explanation.icon.file, kLantern);
  EXPECT_FALSE(Explained(R"(C:\Games\Lantern)").inScan);
}

TEST_F(HostPathExplanation, WhatIsMissingIsToldByWhoAskedForIt) {
  const PathExplanation explanation = Explained(R"(C:\Games\Far Beacon\beacon.exe)");
  EXPECT_EQ(explanation.kind, PathKind::kMissing);
  EXPECT_FALSE(IsFound(explanation));
  EXPECT_FALSE(explanation.icon.asked);
  EXPECT_THAT(explanation.records, Not(IsEmpty()));
  EXPECT_THAT(explanation.records,
              Each(AllOf(Field(&RecordLead::record, "Far Beacon"), Field(&RecordLead::found, false))));
  EXPECT_THAT(PathExplanationText(explanation),
              AllOf(HasSubstr("C:\\Games\\Far Beacon\\beacon.exe doesn't exist\n"),
                    HasSubstr("record 'Far Beacon': Default Exe Search only asked: C:\\Games\\Far "
                              "Beacon\\beacon.exe doesn't exist\n"),
                    HasSubstr("  Default Exe Search asks for it and finds nothing\n")));
}

TEST_F(HostPathExplanation, ALaunchersGameNeedsNoRecord) {
  const PathExplanation explanation = Explained(R"(C:\Games\GOG\Candlemark Saga\candlemark.exe)");
  EXPECT_THAT(StrategiesOf(explanation), Contains("GOG Registry Search"));
  EXPECT_THAT(explanation.records, IsEmpty());
  EXPECT_TRUE(explanation.inScan);
  EXPECT_THAT(PathExplanationText(explanation),
              HasSubstr("  GOG Registry Search finds 'Candlemark Saga': C:\\Games\\GOG\\Candlemark "
                        "Saga\\candlemark.exe\n"));
}

TEST_F(HostPathExplanation, AnApplicationLeadsToItsExecutableAndItsFolder) {
  const PathExplanation program = Explained(R"(C:\Program Files\Fernpad\fernpad.exe)");
  ASSERT_THAT(program.applications, SizeIs(1));
  EXPECT_EQ(program.applications.front().name, "Fernpad Editor");
  EXPECT_EQ(program.applications.front().how, "executable");
  EXPECT_TRUE(IsFound(program));
  const PathExplanation folder = Explained(R"(C:\Program Files\Fernpad)");
  ASSERT_THAT(folder.applications, SizeIs(1));
  EXPECT_EQ(folder.applications.front().how, "folder");
  EXPECT_THAT(folder.icon.searched, ElementsAre(R"(C:\Program Files\Fernpad)"));
  EXPECT_EQ(folder.icon.winner, R"(C:\Program Files\Fernpad\fernpad.exe)");
}

TEST_F(HostPathExplanation, WhatNobodyKnowsHasItsIconAlone) {
  const PathExplanation explanation = Explained(R"(C:\Games\Attic\attic.exe)");
  EXPECT_EQ(explanation.kind, PathKind::kFile);
  EXPECT_FALSE(IsFound(explanation));
  EXPECT_EQ(explanation.icon.file, R"(C:\Games\Attic\attic.exe)");
  EXPECT_THAT(PathExplanationText(explanation),
              HasSubstr("  neither a strategy nor an application leads there\n"));
}

TEST_F(HostPathExplanation, TheJsonHasEverything) {
  const nlohmann::ordered_json json = PathExplanationJson(Explained(kLantern));
  EXPECT_EQ(json.at("kind"), "file");
  EXPECT_EQ(json.at("inScan"), true);
  EXPECT_EQ(json.at("records").at(0).at("name"), "Lantern Harbour");
  EXPECT_EQ(json.at("strategies").at(0).at("found").at(0).at("path"), kLantern);
  EXPECT_FALSE(json.at("strategies").at(0).at("questions").empty());
  EXPECT_EQ(json.at("icon").at("file"), kLantern);
  EXPECT_TRUE(json.at("applications").is_array());
}

TEST_F(HostPathExplanation, VerboseTellsTheQuestions) {
  const PathExplanation explanation = Explained(kLantern);
  const std::string line = "    look for " + std::string(kLantern) + ": file\n";
  EXPECT_THAT(PathExplanationText(explanation, true), HasSubstr(line));
  EXPECT_THAT(PathExplanationText(explanation), Not(HasSubstr(line)));
}

}  // namespace
}  // namespace tarnwick
