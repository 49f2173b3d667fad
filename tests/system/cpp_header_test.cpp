// The header for hosts in C++, compiled as C++17 as they may do: on the built library, and on a stand-in with
// the same exports and fixed answers, which can also fail in ways that the library doesn't.
#include "tarnwick/tarnwick.hpp"

#include "common/wide_text.h"
#include "desktop/desktop.h"
#include "support/file_bytes.h"
#include "support/foreground.h"
#include "support/process.h"
#include "support/source_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

namespace tarnwick::tests {
namespace {

static_assert(__cplusplus == 201703L, "hosts may be older than this library");

using common::Narrow;
using common::Wide;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kFolder = "C:\\TarnwickTest\\Header\\";

std::wstring RealPath() { return PathBesideProgram(L"Tarnwick.dll"); }
std::wstring StandInPath() { return PathBesideProgram(L"stand-in\\Tarnwick-stand-in.dll"); }
std::wstring MissingExportPath() { return PathBesideProgram(L"stand-in\\Tarnwick-missing-export.dll"); }

bool IsLoaded(const std::wstring& path) { return GetModuleHandleW(path.c_str()) != nullptr; }

std::string Golden(const std::string& name) {
  return ReadBytes(SourceFolder() + "/bindings/golden/" + name + ".json");
}

// What `call` throws.
template <class Call>
Error Thrown(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  throw std::runtime_error("nothing was thrown");
}

Error LoadFailure(const std::wstring& path) {
  return Thrown([&] { const Library library(path); });
}

// --- Loading. ---

TEST(CppHeader, LoadsTheLibraryFromAFullPathAndAnswersWithItsTexts) {
  const Library library(RealPath());
  EXPECT_TRUE(library.IsOpen());
  EXPECT_EQ(library.Scan(kFolder + "no catalogue.xml"), "[]");
  EXPECT_EQ(library.GameDetails(kFolder + "no game.exe"), "{}");
  EXPECT_GE(library.Refresh(), 0);
  EXPECT_EQ(library.Applications(1, 20, "no application of this name"), "[]");
  EXPECT_EQ(library.AllApplications("no application of this name"), "[]");
  EXPECT_EQ(library.FindGames("[]"), "[]");
  EXPECT_EQ(library.FindGamesInFile(kFolder + "no file.json"), "[]");
}

TEST(CppHeader, TellsOfOneExecutableByTheRealLibrary) {
  desktop::Desktop world;
  const std::string path = kFolder + "Größe 游戏.exe";
  world.Executable(path);
  const std::string details = Library(RealPath()).GameDetails(path);
  EXPECT_THAT(details, StartsWith("{\"name\":\"Größe 游戏\""));
  EXPECT_THAT(details, HasSubstr("\"exepath\":\"C:\\\\TarnwickTest\\\\Header\\\\Größe 游戏.exe\""));
}

TEST(CppHeader, TakesFullPathsOnly) {
  for (const wchar_t* path :
       {L"", L"Tarnwick.dll", L".\\Tarnwick.dll", L"C:Tarnwick.dll", L"\\Tarnwick.dll"}) {
    EXPECT_EQ(LoadFailure(path).Kind(), Fault::kNoFullPath) << Narrow(path);
  }
  std::wstring slashes = StandInPath();
  std::replace(slashes.begin(), slashes.end(), L'\\', L'/');
  EXPECT_TRUE(Library(slashes).IsOpen());
}

TEST(CppHeader, NamesTheLibraryThatIsMissing) {
  const Error error = LoadFailure(Wide(kFolder + "Größe\\Tarnwick.dll"));
  EXPECT_EQ(error.Kind(), Fault::kMissing);
  EXPECT_THAT(error.what(), StartsWith(kFolder + "Größe\\Tarnwick.dll: there is no such file"));
}

// The library as it would be for a 32-bit processor.
std::string With32BitMachine(std::string bytes) {
  uint32_t headers = 0;
  std::memcpy(&headers, bytes.data() + 0x3C, sizeof headers);
  const uint16_t machine = IMAGE_FILE_MACHINE_I386;
  std::memcpy(bytes.data() + headers + 4, &machine, sizeof machine);
  return bytes;
}

TEST(CppHeader, TellsAFileOfTheWrongKindFromAMissingOne) {
  desktop::Desktop world;
  world.File(kFolder + "32.dll", With32BitMachine(ReadBytes(Narrow(StandInPath()))));
  world.File(kFolder + "text.dll", "no library");
  for (const char* name : {"32.dll", "text.dll"}) {
    const Error error = LoadFailure(Wide(kFolder + name));
    EXPECT_EQ(error.Kind(), Fault::kWrongKind) << error.what();
    EXPECT_THAT(error.what(),
                AllOf(StartsWith(kFolder + name), HasSubstr("this 64-bit program can't load it")));
  }
}

TEST(CppHeader, NamesTheExportThatIsMissingAndUnloadsWhatLacksIt) {
  const Error error = LoadFailure(MissingExportPath());
  EXPECT_EQ(error.Kind(), Fault::kMissingExport);
  EXPECT_THAT(error.what(), HasSubstr("IA_RefreshCache"));
  EXPECT_FALSE(IsLoaded(MissingExportPath()));
}

// What the library imports comes from Windows alone: not from the folder of the program, where a plain load
// would look first, nor from the library's own.
TEST(CppHeader, LoadsNothingElseOfTheFoldersAround) {
  std::string bytes = ReadBytes(Narrow(StandInPath()));
  const std::string own = bytes;
  const size_t name = bytes.find("KERNEL32.dll");
  ASSERT_NE(name, std::string::npos);
  bytes.replace(name, 12, "planted1.dll");
  desktop::Desktop world;
  world.File(kFolder + "Tarnwick.dll", bytes);
  world.File(kFolder + "planted1.dll", own);
  world.File(TestProgramFolder() + "planted1.dll", own);
  const Error error = LoadFailure(Wide(kFolder + "Tarnwick.dll"));
  EXPECT_EQ(error.Kind(), Fault::kNotLoaded);
  EXPECT_THAT(error.what(), HasSubstr("error 126"));
  EXPECT_FALSE(IsLoaded(L"planted1.dll"));
}

TEST(CppHeader, LooksBesideTheProgram) {
  EXPECT_EQ(Narrow(PathBesideProgram()), TestProgramFolder() + "Tarnwick.dll");
}

TEST(CppHeader, UnloadsWithTheLastCopy) {
  std::optional<Library> first(StandInPath());
  std::optional<Library> second(first);
  first.reset();
  EXPECT_EQ(second->Refresh(), 3);
  second->Close();
  EXPECT_FALSE(IsLoaded(StandInPath()));
}

TEST(CppHeader, EveryCallAfterCloseThrows) {
  Library library(StandInPath());
  const Library copy = library;
  library.Close();
  EXPECT_FALSE(library.IsOpen());
  const std::vector<std::function<void()>> calls = {
      [&] { library.Scan(); },           [&] { library.Report(); },
      [&] { library.GameDetails(""); },  [&] { library.Refresh(); },
      [&] { library.FindGames(""); },    [&] { library.FindGamesInFile(""); },
      [&] { library.Exports(); },        [&] { library.Applications(1, 20); },
      [&] { library.AllApplications(); }};
  for (const auto& call : calls) {
    const Error error = Thrown(call);
    EXPECT_EQ(error.Kind(), Fault::kClosed);
    EXPECT_THAT(error.what(), HasSubstr("closed"));
  }
  EXPECT_EQ(copy.Refresh(), 3);
}

// --- Answers. ---

TEST(CppHeader, HandsTheAnswersOverAsTheyAre) {
  const Library library(StandInPath());
  EXPECT_EQ(library.Scan(), Golden("scan"));
  EXPECT_EQ(library.GameDetails("C:\\a.exe"), Golden("details"));
  EXPECT_EQ(library.Applications(1, 20), Golden("apps"));
  EXPECT_EQ(library.AllApplications(), Golden("apps-all"));
  EXPECT_EQ(library.FindGames("[{}]"), Golden("find"));
  EXPECT_EQ(library.FindGamesInFile("C:\\request.json"), Golden("find"));
  EXPECT_EQ(library.Refresh(), 3);
}

TEST(CppHeader, HandsTheArgumentsOverAsTheyAre) {
  const Library library(StandInPath());
  const std::string text = "echo:Größe 游戏 \xF0\x9F\x8E\xAE";
  const std::string start = "[{\"name\":\"" + text + "\"";
  EXPECT_THAT(library.Scan(text), StartsWith(start));
  EXPECT_THAT(library.GameDetails(text), StartsWith("{\"name\":\"" + text + "\""));
  EXPECT_THAT(library.Applications(7, 12, text),
              AllOf(StartsWith(start), HasSubstr("\"version\":\"7\""), HasSubstr("\"sizeKB\":12")));
  EXPECT_THAT(library.AllApplications(text), StartsWith(start));
  EXPECT_THAT(library.FindGames(text), StartsWith(start));
  EXPECT_THAT(library.FindGamesInFile(text), StartsWith(start));
}

TEST(CppHeader, AsksForTheReport) {
  const Library library(StandInPath());
  library.Report();
  library.Report();
  EXPECT_THAT(library.Scan("counts"), HasSubstr("reports=2"));
}

TEST(CppHeader, AsksAgainWithRoomForAnAnswerThatWasCut) {
  const std::string answer = Library(StandInPath()).Scan("large");
  EXPECT_GT(answer.size(), 5u << 20);
  EXPECT_THAT(answer.substr(answer.size() - 2), "}]");
}

TEST(CppHeader, GivesUpOnAnAnswerThatKeepsGrowing) {
  const Library library(StandInPath());
  const Error error = Thrown([&] { library.Scan("cut"); });
  EXPECT_EQ(error.Kind(), Fault::kKeptGrowing);
  EXPECT_THAT(error.what(), AllOf(HasSubstr("kept growing"), HasSubstr("4 calls")));
  EXPECT_THAT(library.Scan("counts"), HasSubstr("cuts=4"));
}

// An export that answers with `texts` in turn, by the buffer contract, and notes the sizes it was given.
struct FakeExport {
  std::vector<std::string> texts;
  std::vector<int> sizes;

  int operator()(char* buffer, int size) {
    const std::string& text = texts[std::min(sizes.size(), texts.size() - 1)];
    sizes.push_back(size);
    const size_t count = std::min(text.size(), static_cast<size_t>(size) - 1);
    std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
    return static_cast<int>(text.size());
  }
};

constexpr int kFirst = static_cast<int>(kFirstBufferBytes);

TEST(CppHeader, TakesATextThatFitsAtOnceAndKeepsNoRoomBehindIt) {
  FakeExport fake{{"[]"}, {}};
  const std::string answer = WholeAnswer(std::ref(fake));
  EXPECT_EQ(answer, "[]");
  EXPECT_LT(answer.capacity(), 100u);
  EXPECT_THAT(fake.sizes, ElementsAre(kFirst));
}

TEST(CppHeader, AsksAgainForATextOfExactlyTheBuffersSizeBecauseItsTerminatorHadNoRoom) {
  const std::string text(kFirstBufferBytes, 'x');
  FakeExport fake{{text}, {}};
  EXPECT_EQ(WholeAnswer(std::ref(fake)), text);
  EXPECT_THAT(fake.sizes, ElementsAre(kFirst, kFirst + 1));
}

TEST(CppHeader, GoesOnForATextThatGrowsBetweenCalls) {
  FakeExport fake{{std::string(kFirstBufferBytes, 'a'), std::string(kFirstBufferBytes * 3, 'b')}, {}};
  EXPECT_EQ(WholeAnswer(std::ref(fake)), fake.texts[1]);
  EXPECT_THAT(fake.sizes, ElementsAre(kFirst, kFirst + 1, 3 * kFirst + 1));
}

TEST(CppHeader, RefusesLengthsThatNoBufferCouldHave) {
  for (const int length : {-1, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(Thrown([&] { WholeAnswer([&](char*, int) { return length; }); }).Kind(), Fault::kTooLong);
  }
}

// --- The watch. The stand-in's reports a process at once, and another one at each interval. ---

constexpr int32_t kInterval = 50;

struct Reports {
  mutable std::mutex mutex;
  std::vector<ForegroundProcess> seen;
  DWORD thread = 0;

  void Add(const ForegroundProcess& process) {
    const std::lock_guard<std::mutex> lock(mutex);
    seen.push_back(process);
    thread = GetCurrentThreadId();
  }
  size_t Count() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return seen.size();
  }
  bool Reach(size_t count) const {
    return Eventually([&] { return Count() >= count; });
  }
  // Nothing comes any more.
  bool HaveEnded() const {
    const size_t before = Count();
    Sleep(5 * kInterval);
    return Count() == before;
  }
  FocusHandler Adding() {
    return [this](const ForegroundProcess& process) { Add(process); };
  }
};

class CppHeaderWatch : public testing::Test {
 protected:
  ~CppHeaderWatch() override {
    library.Close();
    EXPECT_FALSE(IsLoaded(StandInPath())) << "something holds the library";
  }

  Reports reports;
  Library library{StandInPath()};
};

TEST_F(CppHeaderWatch, ReportsProcessesOnAThreadOfItsOwnUntilItsEnd) {
  {
    const FocusWatch watch(library, reports.Adding(), kInterval);
    ASSERT_TRUE(reports.Reach(3));
  }
  EXPECT_TRUE(reports.HaveEnded());
  EXPECT_NE(reports.thread, GetCurrentThreadId());
  EXPECT_EQ(reports.seen[0].fileName, "game.exe");
  EXPECT_EQ(reports.seen[0].processId, 4242u);
  EXPECT_EQ(reports.seen[0].fullPath, "C:\\Games\\game.exe");
  EXPECT_EQ(reports.seen[1].fileName + reports.seen[1].fullPath, "");
  EXPECT_EQ(reports.seen[2].fileName, "spät \xF0\x9F\x8E\xAE.exe");
}

TEST_F(CppHeaderWatch, KeepsTheLibraryLoadedUntilItStops) {
  FocusWatch watch(library, reports.Adding(), kInterval);
  library.Close();
  ASSERT_TRUE(reports.Reach(2));
  EXPECT_TRUE(IsLoaded(StandInPath()));
  watch.Stop();
  EXPECT_FALSE(IsLoaded(StandInPath()));
  watch.Stop();
}

TEST_F(CppHeaderWatch, IsTheOnlyOneAtATime) {
  Reports others;
  {
    const FocusWatch watch(library, reports.Adding(), kInterval);
    const Error error = Thrown([&] { const FocusWatch second(library, others.Adding(), kInterval); });
    EXPECT_EQ(error.Kind(), Fault::kWatchRunning);
    EXPECT_THAT(error.what(), HasSubstr("there is a focus watch already"));
    ASSERT_TRUE(reports.Reach(2)) << "the first one goes on";
  }
  const FocusWatch third(library, others.Adding(), kInterval);
  EXPECT_TRUE(others.Reach(1));
}

TEST_F(CppHeaderWatch, WantsAnOpenLibraryAndLeavesNothingBehindWithoutOne) {
  Library closed = library;
  closed.Close();
  EXPECT_EQ(Thrown([&] { const FocusWatch watch(closed, reports.Adding()); }).Kind(), Fault::kClosed);
  const FocusWatch watch(library, reports.Adding(), kInterval);
  EXPECT_TRUE(reports.Reach(1));
}

TEST_F(CppHeaderWatch, StopWaitsForTheHandlerThatIsRunning) {
  std::atomic<bool> inside{false};
  std::atomic<bool> left{false};
  FocusWatch watch(
      library,
      [&](const ForegroundProcess&) {
        inside = true;
        Sleep(300);
        left = true;
      },
      kInterval);
  ASSERT_TRUE(Eventually([&] { return inside.load(); }));
  watch.Stop();
  EXPECT_TRUE(left);
}

// A watch that its own handler can reach, and a word from the test that it may.
struct ReachableWatch {
  std::atomic<bool> ready{false};
  std::optional<FocusWatch> watch;

  void AwaitReady() const {
    EXPECT_TRUE(Eventually([this] { return ready.load(); }));
  }
};

TEST_F(CppHeaderWatch, StopsFromWithinItsHandler) {
  ReachableWatch own;
  own.watch.emplace(
      library,
      [&](const ForegroundProcess& process) {
        own.AwaitReady();
        own.watch->Stop();
        reports.Add(process);
      },
      kInterval);
  own.ready = true;
  ASSERT_TRUE(reports.Reach(1));
  EXPECT_TRUE(reports.HaveEnded());
  EXPECT_EQ(Thrown([&] { const FocusWatch second(library, reports.Adding()); }).Kind(), Fault::kWatchRunning);
  own.watch.reset();
  const FocusWatch next(library, reports.Adding(), kInterval);
  EXPECT_TRUE(reports.Reach(2));
}

TEST_F(CppHeaderWatch, GoesFromWithinItsHandlerAndMakesRoomForAnother) {
  ReachableWatch own;
  std::atomic<Fault> inside{Fault::kClosed};
  own.watch.emplace(
      library,
      [&](const ForegroundProcess& process) {
        own.AwaitReady();
        own.watch.reset();
        inside = Thrown([&] { const FocusWatch next(library, [](const ForegroundProcess&) {}); }).Kind();
        reports.Add(process);
      },
      kInterval);
  own.ready = true;
  ASSERT_TRUE(reports.Reach(1));
  EXPECT_TRUE(reports.HaveEnded());
  EXPECT_EQ(inside.load(), Fault::kWatchRunning);
  const FocusWatch next(library, reports.Adding(), kInterval);
  EXPECT_TRUE(reports.Reach(3));
}

TEST_F(CppHeaderWatch, KeepsWhatTheHandlerThrowsAndCallsItNoMore) {
  FocusWatch watch(
      library,
      [&](const ForegroundProcess& process) {
        reports.Add(process);
        throw std::runtime_error("of the handler's own");
      },
      kInterval);
  ASSERT_TRUE(Eventually([&] { return watch.Failure() != nullptr; }));
  EXPECT_TRUE(reports.HaveEnded());
  EXPECT_EQ(reports.Count(), 1u);
  watch.Stop();
  try {
    std::rethrow_exception(watch.Failure());
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "of the handler's own");
  }
}

TEST_F(CppHeaderWatch, TheHandlerMayCallTheLibrary) {
  std::atomic<int32_t> answer{0};
  const FocusWatch watch(library, [&](const ForegroundProcess&) { answer = library.Refresh(); }, kInterval);
  EXPECT_TRUE(Eventually([&] { return answer == 3; }));
}

TEST(CppHeaderRealWatch, ReportsTheForegroundProcessAndUnloads) {
  const OwnWindow own;
  ASSERT_TRUE(BringForward(own.Window()));
  Reports reports;
  {
    const FocusWatch watch(Library(RealPath()), reports.Adding(), kInterval);
    ASSERT_TRUE(reports.Reach(1));
  }
  EXPECT_EQ(reports.seen[0].processId, GetCurrentProcessId());
  EXPECT_THAT(reports.seen[0].fullPath, StartsWith(TestProgramFolder()));
  EXPECT_FALSE(IsLoaded(RealPath()));
}

TEST(CppHeaderRealWatch, GoesFromWithinItsHandlerAndMakesRoomForAnother) {
  const OwnWindow window;
  ASSERT_TRUE(BringForward(window.Window()));
  Reports reports;
  ReachableWatch own;
  own.watch.emplace(
      Library(RealPath()),
      [&](const ForegroundProcess& process) {
        own.AwaitReady();
        own.watch.reset();
        reports.Add(process);
      },
      kInterval);
  own.ready = true;
  ASSERT_TRUE(reports.Reach(1));
  EXPECT_TRUE(IsLoaded(RealPath())) << "its thread may still be there";
  {
    const FocusWatch next(Library(RealPath()), reports.Adding(), kInterval);
    EXPECT_TRUE(reports.Reach(2));
  }
  EXPECT_FALSE(IsLoaded(RealPath()));
}

}  // namespace
}  // namespace tarnwick::tests
