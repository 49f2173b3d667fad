// Reading time of Steam's files by their size: each doubled four times. Linear reading shows as the same
// bytes per second in every row, and as a complexity of N with a small deviation.
#include "steam/app_info_reader.h"
#include "steam/app_manifest_reader.h"
#include "steam/library_folders_reader.h"
#include "steam/shortcuts_reader.h"
#include "support/native_log.h"
#include "support/steam_bytes.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <sstream>
#include <string>

namespace tarnwick {
namespace {

using tests::AppInfoBytes;

constexpr int64_t kSmallest = 1024;
constexpr int64_t kLargest = kSmallest << 4;

using Clock = std::chrono::steady_clock;

// How often the time of the row before goes into this row's; 0 in the first row. A row runs several times
// until its number of iterations is right, and the last time counts.
double RatioToRowBefore(int64_t size, double seconds) {
  struct Row {
    int64_t size = 0;
    double seconds = 0;
  };
  static Row before;
  static Row now;
  if (size != now.size) before = now;
  now = {size, seconds};
  return size > before.size && before.seconds > 0 ? seconds / before.seconds : 0;
}

void Report(benchmark::State& state, Clock::time_point start, size_t bytes) {
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  state.counters["ratio"] =
      RatioToRowBefore(state.range(0), seconds / static_cast<double>(state.iterations()));
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
  state.SetComplexityN(state.range(0));
}

void LibraryFolders(benchmark::State& state) {
  std::string file = "\"libraryfolders\"\n{\n";
  for (int64_t i = 0; i < state.range(0); ++i) {
    file += "\t\"" + std::to_string(i) + "\"\n\t{\n\t\t\"path\"\t\t\"D:\\\\Library " + std::to_string(i) +
            "\"\n\t\t\"apps\"\n\t\t{\n\t\t\t\"228980\"\t\t\"997646719\"\n\t\t}\n\t}\n";
  }
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    std::istringstream text(file);
    benchmark::DoNotOptimize(ReadLibraryFolders(text));
  }
  Report(state, start, file.size());
}

void AppManifest(benchmark::State& state) {
  std::string file =
      "\"AppState\"\n{\n\t\"appid\"\t\t\"620\"\n\t\"name\"\t\t\"Game\"\n\t\"installdir\"\t\t\"Game\"\n";
  for (int64_t i = 0; i < state.range(0); ++i)
    file += "\t\t\"" + std::to_string(i) + "\"\t\t\"8207314901980262131\"\n";
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    std::istringstream text(file);
    benchmark::DoNotOptimize(ReadAppManifest(text));
  }
  Report(state, start, file.size());
}

// One line without an end: no search may start over for every quote.
void AppManifestOneLine(benchmark::State& state) {
  std::string file;
  for (int64_t i = 0; i < state.range(0); ++i) file += "\"appi\" \"name \" installdir\" ";
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    std::istringstream text(file);
    benchmark::DoNotOptimize(ReadAppManifest(text));
  }
  Report(state, start, file.size());
}

std::string ManyApps(AppInfoBytes& bytes, int64_t count) {
  const std::string app = bytes.App("A game of some length", "bin\\win64\\game.exe");
  std::string records;
  for (int64_t i = 1; i <= count; ++i) records += bytes.Record(static_cast<uint32_t>(i), app);
  return bytes.File(records);
}

void AppInfoIndex(benchmark::State& state) {
  AppInfoBytes bytes;
  const std::string file = ManyApps(bytes, state.range(0));
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    std::istringstream stream(file);
    SteamAppInfoReader reader;
    IndexAppInfo(reader, stream);
    benchmark::DoNotOptimize(reader.index.size());
    tests::NativeLogLines().clear();
  }
  Report(state, start, file.size());
}

void AppInfoAllDetails(benchmark::State& state) {
  AppInfoBytes bytes;
  const std::string file = ManyApps(bytes, state.range(0));
  std::istringstream stream(file);
  SteamAppInfoReader reader;
  IndexAppInfo(reader, stream);
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    for (const auto& [appId, entry] : reader.index) {
      AppInfoDetails details;
      if (!ReadAppDetails(reader, stream, appId, details) || details.executable.empty()) {
        return state.SkipWithError("not read");
      }
    }
  }
  tests::NativeLogLines().clear();
  Report(state, start, file.size());
}

// One app, and a string table whose only entry grows with it.
void AppInfoLongKeys(benchmark::State& state) {
  AppInfoBytes bytes;
  std::string entries;
  const std::string key(static_cast<size_t>(state.range(0)) * 10, 'k');
  for (int64_t i = 0; i < state.range(0); ++i) entries += bytes.Entry(4, key, "");
  const std::string file = bytes.File(bytes.Record(1, bytes.Section("common", entries)));
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    std::istringstream stream(file);
    SteamAppInfoReader reader;
    IndexAppInfo(reader, stream);
    AppInfoDetails details;
    benchmark::DoNotOptimize(ReadAppDetails(reader, stream, 1, details));
    tests::NativeLogLines().clear();
  }
  Report(state, start, file.size());
}

void Shortcuts(benchmark::State& state) {
  std::string file;
  for (int64_t i = 0; i < state.range(0); ++i)
    file += tests::ShortcutRecord("A game", "\"D:\\Games\\g.exe\"", "D:\\Games");
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    std::vector<SteamShortcut> shortcuts;
    ReadShortcuts(file, shortcuts);
    benchmark::DoNotOptimize(shortcuts.data());
  }
  Report(state, start, file.size());
}

// Keys without an end and no boundary: every key's search for its NUL could run to the file's end.
void ShortcutsMarkersOnly(benchmark::State& state) {
  const std::string file(static_cast<size_t>(state.range(0)) * 20, '\x01');
  const Clock::time_point start = Clock::now();
  for (auto _ : state) {
    std::vector<SteamShortcut> shortcuts;
    ReadShortcuts(file, shortcuts);
    benchmark::DoNotOptimize(shortcuts.data());
  }
  Report(state, start, file.size());
}

#define TARNWICK_BY_SIZE(reader) \
  BENCHMARK(reader)->RangeMultiplier(2)->Range(kSmallest, kLargest)->Complexity(benchmark::oN)

TARNWICK_BY_SIZE(LibraryFolders);
TARNWICK_BY_SIZE(AppManifest);
TARNWICK_BY_SIZE(AppManifestOneLine);
TARNWICK_BY_SIZE(AppInfoIndex);
TARNWICK_BY_SIZE(AppInfoAllDetails);
TARNWICK_BY_SIZE(AppInfoLongKeys);
TARNWICK_BY_SIZE(Shortcuts);
TARNWICK_BY_SIZE(ShortcutsMarkersOnly);

}  // namespace
}  // namespace tarnwick
