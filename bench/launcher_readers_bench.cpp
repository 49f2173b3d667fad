// Reading time of the launchers' files by their size in bytes: each doubled four times, from 4 to 64 MB.
// Reading in linear time shows as a ratio of about 2 in every row and as a complexity of N; where a size
// first outgrows the processor's caches the ratio is higher once. The time is the processor's, so that other
// programs don't count. Beside ordinary files there are those that would make a careless search start over:
// brackets that never match, requests without an answer, one line without an end.
#include "launchers/agent_log_reader.h"
#include "launchers/epic_manifest_reader.h"
#include "launchers/game_data_reader.h"
#include "launchers/json_text_reader.h"
#include "launchers/riot_files_reader.h"
#include "launchers/uplay_configurations_reader.h"
#include "support/hostile_texts.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <sstream>
#include <string>
#include <utility>

namespace tarnwick {
namespace {

using tests::Repeated;

constexpr int64_t kSmallest = int64_t{4} << 20;
constexpr int64_t kLargest = kSmallest << 4;

// How often the time of the row before goes into this row's; 0 in the first row of a reader. The library runs
// a row several times until its number of iterations is right, and the last time counts.
double RatioToRowBefore(int64_t size, double seconds) {
  static std::pair<int64_t, double> before;
  static std::pair<int64_t, double> now;
  if (size != now.first) before = now;
  now = {size, seconds};
  return size > before.first && before.second > 0 ? seconds / before.second : 0;
}

#define TARNWICK_ROWS(name)           \
  BENCHMARK(name)                     \
      ->RangeMultiplier(2)            \
      ->Range(kSmallest, kLargest)    \
      ->Unit(benchmark::kMillisecond) \
      ->Complexity(benchmark::oN)

// Measures `read` on a text of the row's size.
void BySize(benchmark::State& state, const std::string& text, size_t (*read)(const std::string& text)) {
  const std::clock_t start = std::clock();
  for (auto _ : state) benchmark::DoNotOptimize(read(text));
  const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  state.counters["ratio"] =
      RatioToRowBefore(state.range(0), seconds / static_cast<double>(state.iterations()));
  state.SetBytesProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}

// The readers, each as the number of what it found.

size_t EpicItem(const std::string& text) { return ReadEpicManifest(text).InstallLocation.size(); }

size_t EpicList(const std::string& text) {
  size_t bytes = 0;
  for (const std::string_view object : JsonFindObjectArray(text, "InstallationList")) {
    bytes += ReadLauncherInstalledObject(object).InstallLocation.size();
  }
  return bytes;
}

size_t Uplay(const std::string& text) { return ReadUplayConfigurations(text).size(); }

size_t AgentLog(const std::string& text) {
  std::istringstream log(text);
  return ReadAgentLog(log, {}).size();
}

size_t RiotHelper(const std::string& text) {
  std::istringstream json(text);
  return ReadRiotLaunchHelper(json).size();
}

size_t RiotYaml(const std::string& text) {
  std::istringstream yaml(text);
  return ReadYamlInstallPath(yaml, {}).size();
}

size_t GameData(const std::string& text) {
  std::istringstream file(text);
  return ReadGameData(file, {}).size();
}

const std::string kList = "{\"InstallationList\": [";
const std::string kObject =
    "{\"InstallLocation\": \"C:\\\\Games\\\\Wren\", \"AppName\": \"Wren\", \"AppVersion\": \"1\"},\n";
const std::string kRecord =
    "root:\n  name: \"Wren\"\n  start_game:\n    online:\n      executables:\n        - path:\n"
    "            register: HKEY_LOCAL_MACHINE\\SOFTWARE\\Ubisoft\\Launcher\\Installs\\123\\InstallDir\n"
    "            relative: bin\\wren.exe\n";
const std::string kRequest = "[I 17:48:43.0042] Request GET /game/wren\n";
const std::string kAnswer =
    "Response 200 (0.18 ms): {\n \"binaries\": { \"game\": { \"relative_path\": \"w.exe\" } },\n"
    " \"installPath\": \"C:\\\\Games\\\\Wren\"\n}\n";
const std::string kBlock =
    "{\"gameBiz\":\"wren_global\",\"installPath\":\"C:/Wren\",\"gameShortcutName\":\"Wren\"}\1\2";

// `head`, and then `pattern` repeated to the row's size.
#define TARNWICK_BY_SIZE(name, read, head, pattern)                 \
  void name(benchmark::State& state) {                              \
    std::string text = head;                                        \
    text += Repeated(pattern, static_cast<size_t>(state.range(0))); \
    BySize(state, text, read);                                      \
  }                                                                 \
  TARNWICK_ROWS(name)

TARNWICK_BY_SIZE(EpicItemOrdinary, EpicItem, "{", "\t\"CompatibleApps\": [\"public\"],\n");
TARNWICK_BY_SIZE(EpicItemOneEndlessString, EpicItem, "{\"InstallLocation\": \"", "\\\"");
TARNWICK_BY_SIZE(EpicItemQuotes, EpicItem, "", "\"");
TARNWICK_BY_SIZE(EpicItemEndlessList, EpicItem, "{\"AppCategories\": [", "\"plugins\",");
TARNWICK_BY_SIZE(EpicListOrdinary, EpicList, kList, kObject);
TARNWICK_BY_SIZE(EpicListOpeningBraces, EpicList, kList, "{");
TARNWICK_BY_SIZE(EpicListClosingBraces, EpicList, kList, "}");
TARNWICK_BY_SIZE(EpicListOneLine, EpicList, kList, "{x");
TARNWICK_BY_SIZE(UplayOrdinary, Uplay, "", kRecord);
TARNWICK_BY_SIZE(UplayOneRecord, Uplay, "root:\nonline:\n", "- path:\nregister: x\n");
TARNWICK_BY_SIZE(UplayOneLine, Uplay, "root:\nname: ", "x");
TARNWICK_BY_SIZE(AgentLogOrdinary, AgentLog, "", kRequest + kAnswer);
TARNWICK_BY_SIZE(AgentLogRequestsOnly, AgentLog, "", kRequest);
TARNWICK_BY_SIZE(AgentLogOpeningBraces, AgentLog, kRequest, "{\n");
TARNWICK_BY_SIZE(AgentLogOneLine, AgentLog, kRequest, "{");
TARNWICK_BY_SIZE(AgentLogBackslashes, AgentLog, kRequest + "{\"binaries\":0,\"installPath\":\"", "\\\\");
TARNWICK_BY_SIZE(RiotHelperQuotes, RiotHelper, "{", "\"rc_liv\"");
TARNWICK_BY_SIZE(RiotYamlOrdinary, RiotYaml, "", "some_key: \"some value\"\n");
TARNWICK_BY_SIZE(RiotYamlOneLine, RiotYaml, "", "product_install_full_path");
TARNWICK_BY_SIZE(GameDataOrdinary, GameData, "", kBlock);
TARNWICK_BY_SIZE(GameDataOpeningBraces, GameData, "", "{");
TARNWICK_BY_SIZE(GameDataOneBlock, GameData, "{", "\"gameBi\":");

// Each id another: looking for one among those known must not walk through them all.
void GameDataDifferentIds(benchmark::State& state) {
  std::string text;
  for (int64_t id = 0; static_cast<int64_t>(text.size()) < state.range(0); ++id) {
    text += "{\"gameBiz\":\"" + std::to_string(id) + "\"}";
  }
  BySize(state, text, GameData);
}
TARNWICK_ROWS(GameDataDifferentIds);

}  // namespace
}  // namespace tarnwick
