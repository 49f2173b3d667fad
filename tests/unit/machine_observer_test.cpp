#include "foundation/machine/observer.h"

#include "catalogue/xml_parser.h"
#include "common/heard_questions.h"
#include "core/strategy_runner.h"
#include "desktop/description.h"
#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/paths.h"
#include "foundation/machine/registry_keys.h"
#include "foundation/machine/versions.h"
#include "foundation/text.h"
#include "foundation/windows_api.h"
#include "inventory/icons.h"
#include "launchers/arc_registry_search.h"
#include "support/debug_capture.h"
#include "support/file_bytes.h"
#include "support/locked_path.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <set>

namespace tarnwick {
namespace {

using common::Heard;
using common::HeardQuestions;
using desktop::Desktop;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::string kRoot = R"(C:\TarnwickTest\Observer)";
const std::string kKey = R"(HKEY_CURRENT_USER\Software\TarnwickTest\Observer)";
const std::wstring kSubkey = LR"(Software\TarnwickTest\Observer)";

RegistryKey OpenTestKey() { return OpenKey(RegistryRoot::kCurrentUser, kSubkey, RegistryView::kNative); }

// One call of each kind; those that have several forms are asked in each of them.
void AskEverything() {
  const RegistryKey key = OpenTestKey();
  OpenSubkey(key, L"Sub");
  ReadTextValue(key, L"Text");
  ReadNumberValue(key, L"Number");
  ListSubkeys(key);
  ListValues(key);
  const RegistryKey narrow =
      OpenNarrowKey(RegistryRoot::kCurrentUser, WideToUtf8(kSubkey), RegistryView::k64);
  ReadNarrowValue(narrow, "Text", 100);
  ListNarrowSubkeys(narrow);
  FileExists(kRoot + "\\a.txt");
  NarrowFileExists(kRoot + "\\a.txt");
  ShellPathExists(Utf8ToWide(kRoot));
  ShellFolderExists(Utf8ToWide(kRoot));
  NarrowShellPathExists(kRoot);
  IsDirectoryOrThrow(kRoot);
  FileSize(kRoot + "\\a.txt");
  LastWriteTime(Utf8ToWide(kRoot + "\\a.txt"));
  FullPath(kRoot + "\\.");
  ListFiles(kRoot, nullptr);
  ListFolders(kRoot);
  ListFoldersIfOpen(kRoot);
  WalkFiles(kRoot, nullptr);
  WalkFilesDeep(kRoot, nullptr);
  OpenTextFile(kRoot + "\\a.txt");
  OpenBinaryFile(kRoot + "\\a.txt");
  std::string contents;
  ReadWholeFile(Utf8ToWide(kRoot + "\\a.txt"), contents);
  KnownFolderPath(KnownFolder::kCommonData);
  EnvironmentText("SystemDrive", 4);
  ExpandNarrowVariables("%SystemDrive%");
  ExpandVariables(L"%SystemDrive%", 260);
  LogicalDrives();
  IsFixedDrive("C:\\");
  RunsUnderWow64();
  ReadVersionBlock(LR"(C:\windows\system32\kernel32.dll)");
  ReadNarrowVersionBlock(R"(C:\windows\system32\kernel32.dll)");
  LoadIcoFile(Utf8ToWide(kRoot + "\\a.ico"));
}

class MachineObserver : public testing::Test {
 protected:
  MachineObserver() {
    d.String(kKey, "Text", "caf\xC3\xA9");
    d.Dword(kKey, "Number", 7);
    d.Key(kKey + "\\Sub");
    d.File(kRoot + "\\a.txt", "one\r\ntwo");
    d.File(kRoot + "\\sub\\b.txt", "b");
    d.IconFile(kRoot + "\\a.ico", {{{32, 0x2244DD}}});
  }

  Desktop d;
};

// The answer to the last question of a kind.
Answer LastAnswer(const HeardQuestions& heard, QuestionKind kind) {
  Answer answer;
  for (const Heard& one : heard.All()) {
    if (one.question.kind == kind) answer = one.answer;
  }
  return answer;
}

TEST_F(MachineObserver, HearsAQuestionOfEachKindWithItsAnswerAndItsStrategy) {
  const HeardQuestions heard;
  {
    const AskingAs asking("A strategy");
    AskEverything();
  }
  std::set<QuestionKind> kinds;
  for (const Heard& one : heard.All()) {
    kinds.insert(one.question.kind);
    EXPECT_EQ(one.question.asker, "A strategy");
    EXPECT_TRUE(one.answer.given) << NameOf(one.question.kind) << " " << one.question.subject << " "
                                  << one.question.detail << ": " << one.answer.text;
  }
  EXPECT_EQ(kinds.size(), static_cast<size_t>(kQuestionKinds));
}

TEST_F(MachineObserver, HearsEachOfThemOnce) {
  const HeardQuestions heard;
  AskEverything();
  EXPECT_EQ(heard.All().size(), 37u);
}

TEST_F(MachineObserver, HearsNothingWhenItIsGone) {
  Observer observer;
  int count = 0;
  observer.heard = [&](const Question&, const Answer&) { ++count; };
  SetObserver(&observer);
  FileExists(kRoot);
  EXPECT_EQ(count, 1);
  SetObserver(nullptr);
  AskEverything();
  EXPECT_EQ(count, 1);
}

TEST_F(MachineObserver, MayHaveNeitherFunction) {
  const Observer silent;
  SetObserver(&silent);
  EXPECT_TRUE(FileExists(kRoot + "\\a.txt"));
  SetObserver(nullptr);
}

TEST_F(MachineObserver, HearsTheTextsThatCame) {
  const HeardQuestions heard;
  const RegistryKey key = OpenTestKey();
  ReadTextValue(key, L"Text");
  EXPECT_EQ(LastAnswer(heard, QuestionKind::kReadValue).text, "caf\xC3\xA9");
  ReadNumberValue(key, L"Number");
  EXPECT_EQ(LastAnswer(heard, QuestionKind::kReadValue).text, "7");
  ListSubkeys(key);
  EXPECT_EQ(LastAnswer(heard, QuestionKind::kListSubkeys).text, "Sub\n");
  ListFiles(kRoot, nullptr);
  EXPECT_THAT(LastAnswer(heard, QuestionKind::kListFolder).text, HasSubstr(kRoot + "\\a.txt\n"));
  EXPECT_EQ(ReadAll(*OpenTextFile(kRoot + "\\a.txt")), "one\ntwo");
  EXPECT_EQ(LastAnswer(heard, QuestionKind::kReadTextFile).text, "one\ntwo");
  EXPECT_EQ(ReadAll(*OpenBinaryFile(kRoot + "\\a.txt")), "one\r\ntwo");
  EXPECT_EQ(LastAnswer(heard, QuestionKind::kReadBinaryFile).text, "one\r\ntwo");
  EXPECT_THAT(heard.All(),
              Contains(Field(&Heard::question,
                             AllOf(Field(&Question::kind, QuestionKind::kReadValue),
                                   Field(&Question::subject, kKey), Field(&Question::detail, "Number")))));
}

TEST_F(MachineObserver, HearsTheViewThatAKeyIsOpenedIn) {
  const HeardQuestions heard;
  const RegistryKey key = OpenKey(RegistryRoot::kLocalMachine, L"SOFTWARE", RegistryView::k32);
  ListSubkeys(key);
  for (const Heard& one : heard.All()) {
    EXPECT_EQ(one.question.view, RegistryView::k32);
    EXPECT_EQ(one.question.subject, "HKEY_LOCAL_MACHINE\\SOFTWARE");
  }
  EXPECT_THAT(heard.All(), SizeIs(2));
}

TEST_F(MachineObserver, HearsWhatIsNotThereAndWhatFails) {
  const HeardQuestions heard;
  FileExists(kRoot + "\\no");
  OpenKey(RegistryRoot::kCurrentUser, kSubkey + L"\\No", RegistryView::kNative);
  OpenTextFile(kRoot + "\\no");
  EXPECT_THROW(ExistsOrThrow(tests::kUnaskablePath), std::filesystem::filesystem_error);
  for (const Heard& one : heard.All()) EXPECT_FALSE(one.answer.given) << one.question.subject;
  EXPECT_THAT(heard.All(), SizeIs(4));
  EXPECT_THAT(LastAnswer(heard, QuestionKind::kStatus).text, HasSubstr("filesystem error: status"));
}

TEST_F(MachineObserver, LeavesTheLastErrorOfAQuestionAlone) {
  Observer observer;
  observer.heard = [](const Question&, const Answer&) { SetLastError(4711); };
  SetObserver(&observer);
  SetLastError(0);
  FileExists(kRoot + "\\no");
  SetObserver(nullptr);
  EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST_F(MachineObserver, ARefusedQuestionIsAnsweredAsWhereAccessIsDenied) {
  const HeardQuestions heard([](const Question&) { return true; });
  EXPECT_FALSE(FileExists(kRoot + "\\a.txt"));
  EXPECT_THROW(ExistsOrThrow(kRoot), std::filesystem::filesystem_error);
  EXPECT_THROW(LastWriteTime(Utf8ToWide(kRoot)), std::filesystem::filesystem_error);
  EXPECT_EQ(OpenTestKey().error, ERROR_ACCESS_DENIED);
  EXPECT_FALSE(*OpenTextFile(kRoot + "\\a.txt"));
  EXPECT_THROW(ForEach(ListFolders(kRoot), [](const FolderEntry&) {}), std::filesystem::filesystem_error);
  EXPECT_NO_THROW(ForEach(ListFoldersIfOpen(kRoot), [](const FolderEntry&) {}));
  EXPECT_EQ(KnownFolderPath(KnownFolder::kCommonData), "");
  EXPECT_EQ(FullPath("a\\."), "a\\.");
  for (const Heard& one : heard.All()) EXPECT_FALSE(one.answer.given);
  EXPECT_THAT(heard.All(), SizeIs(9));
}

// --- Through strategies. ---

constexpr char kArcRoot[] = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Perfect World Entertainment\Core\)";

void AddArcGame(Desktop& d, const std::string& name) {
  const std::string client = kRoot + "\\" + name + ".exe";
  d.File(client);
  d.String(kArcRoot + name, "Client", client, desktop::View::k32);
  d.String(kArcRoot + name, "InstallPath", kRoot, desktop::View::k32);
}

std::vector<std::string> FoundByArc() {
  const ScanStrategy arc = {"Arc Registry Search", 4, ArcRegistrySearch};
  ScanResults results;
  ExecuteStrategyGuarded(&arc, std::make_unique<GameList>().get(), &results);
  std::vector<std::string> names;
  for (const ScanResult& result : results) names.push_back(result.name);
  return names;
}

TEST_F(MachineObserver, RefusingOneQuestionCostsThatOneAlone) {
  AddArcGame(d, "Alpha");
  AddArcGame(d, "Beta");
  const tests::DebugCapture quiet;
  const auto refused = [](QuestionKind kind, const std::string& subject) {
    const HeardQuestions heard(
        [&](const Question& question) { return question.kind == kind && question.subject == subject; });
    return FoundByArc();
  };
  EXPECT_THAT(FoundByArc(), ElementsAre("Alpha", "Beta"));
  EXPECT_THAT(refused(QuestionKind::kOpenKey, kArcRoot + std::string("Alpha")), ElementsAre("Beta"));
  EXPECT_THAT(refused(QuestionKind::kListValues, kArcRoot + std::string("Beta")), ElementsAre("Alpha"));
  EXPECT_THAT(refused(QuestionKind::kAttributes, kRoot + "\\Alpha.exe"), ElementsAre("Beta"));
  // The full form of a path is no condition.
  EXPECT_THAT(refused(QuestionKind::kFullPath, kRoot + "\\Alpha.exe"), ElementsAre("Alpha", "Beta"));
  EXPECT_THAT(FoundByArc(), ElementsAre("Alpha", "Beta"));
}

TEST_F(MachineObserver, WhicheverQuestionIsRefusedTheOtherGameStays) {
  AddArcGame(d, "Alpha");
  AddArcGame(d, "Beta");
  const tests::DebugCapture quiet;
  size_t questions = 0;
  {
    const HeardQuestions heard;
    FoundByArc();
    questions = heard.All().size();
  }
  ASSERT_GT(questions, 8u);
  // The first two open and list the key of all games.
  for (size_t refused = 2; refused < questions; ++refused) {
    size_t asked = 0;
    const HeardQuestions heard([&](const Question&) { return asked++ == refused; });
    EXPECT_THAT(FoundByArc(), SizeIs(testing::Ge(1u))) << refused;
  }
}

ScanResults AskALot(const GameList&, const std::string&) {
  for (int i = 0; i < 500; ++i) {
    FileExists(kRoot + "\\a.txt");
    OpenTestKey();
  }
  return {};
}

TEST_F(MachineObserver, KnowsTheStrategyOnFiveThreadsAtOnce) {
  const std::vector<ScanStrategy> strategies = {{"One", 6, AskALot},
                                                {"Two", 6, AskALot},
                                                {"Three", 6, AskALot},
                                                {"Four", 6, AskALot},
                                                {"Five", 6, AskALot}};
  const tests::DebugCapture quiet;
  const HeardQuestions heard;
  RunStrategies({}, [&] { return strategies; });
  FileExists(kRoot);
  std::map<std::string, std::set<uint32_t>> threads;
  std::map<std::string, int> counts;
  for (const Heard& one : heard.All()) {
    ++counts[one.question.asker];
    threads[one.question.asker].insert(one.thread);
  }
  EXPECT_EQ(counts,
            (std::map<std::string, int>{
                {"", 1}, {"One", 1000}, {"Two", 1000}, {"Three", 1000}, {"Four", 1000}, {"Five", 1000}}));
  for (const auto& [asker, ids] : threads) EXPECT_THAT(ids, SizeIs(1)) << asker;
}

// --- A recorder that takes its time. ---

using Told = std::map<std::string, std::vector<std::string>>;  // by strategy, in the order of its questions

Told SlowlyHeard(const GameList& games, const std::vector<ScanStrategy>& strategies) {
  std::mutex mutex;
  Told told;
  Observer observer;
  observer.heard = [&](const Question& question, const Answer& answer) {
    Sleep(1);
    const std::lock_guard lock(mutex);
    told[question.asker].push_back(std::string(NameOf(question.kind)) + " " + question.subject + " " +
                                   question.detail + (answer.given ? ": " : "! ") + answer.text);
  };
  SetObserver(&observer);
  RunStrategies(games, [&] { return strategies; });
  SetObserver(nullptr);
  return told;
}

TEST_F(MachineObserver, ASlowRecorderHearsFiveStrategiesAtOnceAsEachAlone) {
  ApplyDescription(d, tests::ReadSource("desktop/samples/sample-desktop.json"));
  const tests::DebugCapture quiet;
  const GameList games = XmlParser::LoadGameListFromXml(LR"(C:\TarnwickDemo\MasterGameList.xml)");
  std::vector<ScanStrategy> strategies = ScanStrategies();
  strategies.resize(5);
  for (ScanStrategy& strategy : strategies) strategy.priority = 6;
  Told alone;
  for (const ScanStrategy& strategy : strategies) alone.merge(SlowlyHeard(games, {strategy}));
  EXPECT_THAT(alone, SizeIs(5));
  EXPECT_EQ(SlowlyHeard(games, strategies), alone);
}

TEST(MachineNames, AreAllDifferent) {
  std::set<std::string> names;
  for (int kind = 0; kind < kQuestionKinds; ++kind) names.insert(NameOf(static_cast<QuestionKind>(kind)));
  EXPECT_THAT(names, SizeIs(kQuestionKinds));
  EXPECT_STREQ(NameOf(QuestionKind::kProcess), "process");
  EXPECT_STREQ(NameOf(RegistryView::k64), "64-bit");
}

}  // namespace
}  // namespace tarnwick
