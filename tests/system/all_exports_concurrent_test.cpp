// All exports at once, for a minute: every answer is the one that a single thread gets.
#include "common/catalogue_text.h"
#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "support/library.h"
#include "support/uninstall_key.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace tarnwick::tests {
namespace {

using desktop::Desktop;
using desktop::View;
using namespace std::chrono_literals;

constexpr auto kDuration = 60s;
constexpr int kThreads = 16;
const std::string kRoot = "C:\\TarnwickTest\\AllExports\\";
const std::string& kMachine = tests::kUninstallKey;
constexpr wchar_t kPublisher[] = L"Tarnwick All";

void Install(Desktop& d, int number) {
  desktop::ExecutableOptions options;
  options.icons = {{{{32, static_cast<uint32_t>(0x101010 * number)}}}};
  const std::string name = "app" + std::to_string(number);
  const std::string path = kRoot + name + "\\" + name + ".exe";
  d.Executable(path, options);
  const std::string key = kMachine + "TarnwickAll" + std::to_string(number);
  d.String(key, "DisplayName", name, View::k64);
  d.String(key, "Publisher", "Tarnwick All", View::k64);
  d.String(key, "DisplayIcon", path + ",0", View::k64);
}

// A game for the scan, which its catalogue knows by a registry key.
void InstallGame(Desktop& d) {
  const std::string key = "HKEY_LOCAL_MACHINE\\SOFTWARE\\TarnwickTest\\AllExports";
  const std::string folder = kRoot + "Game";
  d.Executable(folder + "\\game.exe");
  for (const View view : {View::k32, View::k64}) d.String(key, "InstallLocation", "\"" + folder + "\"", view);
  GameSignature game;
  game.DisplayName = "Tarnwick Game";
  game.RegistryKey = key;
  game.DefaultExe = "game.exe";
  d.File(kRoot + "catalogue.xml", common::CatalogueText({game}));
}

// One way of asking the library, and what a single thread got for an answer.
struct Question {
  std::string name;
  std::function<std::string()> ask;
  std::string answer;
};

template <class Call>
std::string Text(Call call) {
  std::vector<char> buffer(1 << 20);
  const int32_t length = call(buffer.data(), static_cast<int32_t>(buffer.size()));
  return std::to_string(length) + " " + buffer.data();
}

std::vector<Question> Questions(const Library& library) {
  static const std::string request = kRoot + "request.json";
  static const std::string catalogue = kRoot + "catalogue.xml";
  static const std::string executable = kRoot + "app1\\app1.exe";
  return {
      {"refresh", [&] { return std::to_string(library.IA_RefreshCache()); }, {}},
      {"page",
       [&] {
         return Text([&](char* o, int32_t n) { return library.IA_GetAppsJson(2, 2, kPublisher, o, n); });
       },
       {}},
      {"all",
       [&] { return Text([&](char* o, int32_t n) { return library.IA_GetAppsJsonAll(kPublisher, o, n); }); },
       {}},
      {"games",
       [&] {
         return Text([&](char* o, int32_t n) {
           return library.IA_FindGamesJson(R"([{"exeName":"app3.exe"},{"exeName":"app1.exe"}])", o, n);
         });
       },
       {}},
      {"games by file",
       [&] {
         return Text([&](char* o, int32_t n) { return library.IA_FindGamesByFile(request.c_str(), o, n); });
       },
       {}},
      {"details",
       [&] {
         return Text([&](char* o, int32_t n) {
           return library.IA_GetGameDetailsByPathJson(executable.c_str(), o, n);
         });
       },
       {}},
      {"scan",
       [&] {
         return Text([&](char* o, int32_t n) {
           return library.IA_RunMultiPlatformGameScanJson(catalogue.c_str(), o, n);
         });
       },
       {}},
      {"report",
       [&] {
         library.RunMultiPlatformGameScan();
         return std::string();
       },
       {}},
  };
}

std::atomic<int> g_reports = 0;
void Count(const char*, uint32_t, const char*) { ++g_reports; }

TEST(AllExports, SixteenThreadsForAMinuteGetTheAnswersOfOne) {
  Desktop d;
  for (int i = 1; i <= 5; ++i) Install(d, i);
  d.File(kRoot + "request.json", R"([{"name":"Five","exeName":"app5.exe"}])");
  InstallGame(d);
  Library library(TARNWICK_DLL);
  std::vector<Question> questions = Questions(library);
  for (Question& question : questions) question.answer = question.ask();
  ASSERT_GT(questions[2].answer.size(), 1000u);
  ASSERT_NE(questions[4].answer.find("Five"), std::string::npos);
  ASSERT_NE(questions[6].answer.find("Tarnwick Game"), std::string::npos);

  const auto end = std::chrono::steady_clock::now() + kDuration;
  std::vector<std::atomic<int>> asked(questions.size());
  std::mutex mutex;
  std::set<std::string> wrong;
  std::vector<std::thread> threads;
  // The focus watch is started and stopped by one thread, as its contract has it.
  threads.emplace_back([&] {
    library.SetFocusCallbackEx(Count);
    while (std::chrono::steady_clock::now() < end) {
      library.StartFocusWatch(50);
      std::this_thread::sleep_for(70ms);
      library.StopFocusWatch();
    }
  });
  for (int i = 1; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      for (size_t turn = static_cast<size_t>(i); std::chrono::steady_clock::now() < end; ++turn) {
        const Question& question = questions[turn % questions.size()];
        const std::string answer = question.ask();
        ++asked[turn % questions.size()];
        if (answer == question.answer) continue;
        const std::lock_guard lock(mutex);
        wrong.insert(question.name + ": " + answer.substr(0, 200));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& text : wrong) ADD_FAILURE() << text;
  for (size_t i = 0; i < questions.size(); ++i) {
    EXPECT_GT(asked[i], 10) << questions[i].name;
    std::printf("%s: %d\n", questions[i].name.c_str(), asked[i].load());
  }
}

}  // namespace
}  // namespace tarnwick::tests
