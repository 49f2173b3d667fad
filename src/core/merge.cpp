// Reader: the merge of a scan's results.
#include "core/merge.h"

#include "core/steam_url.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace tarnwick {
namespace {

struct RankRow {
  const char* text;
  int rank;
};

// Tested in this order, which is not the order of the ranks. "Steam AppInfo" is a longer form of "Steam App",
// so it comes first.
constexpr RankRow kRanks[] = {{"HKEY", 3}, {"Steam AppInfo", 1}, {"Steam App", 4}, {"Steam ID", 2}};

bool HasPath(const ScanResults& results, const std::string& path) {
  return !path.empty() && std::any_of(results.begin(), results.end(),
                                      [&](const ScanResult& result) { return result.exePath == path; });
}

}  // namespace

int SourceRank(const std::string& source) {
  for (const RankRow& row : kRanks) {
    if (source.find(row.text) != std::string::npos) return row.rank;
  }
  return 0;
}

// Kept: the two tests aren't symmetric. A Steam result looks at app ids only, so it may stand beside an
// earlier entry of its path; another result looks at every path, those of Steam entries included
// (docs/decisions/scan-answer.md).
ScanResults MergeResults(const ScanResults& all) {
  ScanResults unique;
  std::map<std::string, size_t> steam_index;
  for (const ScanResult& result : all) {
    const std::string app_id = SteamAppId(result.launchUrl);
    if (app_id.empty()) {
      if (!HasPath(unique, result.exePath)) unique.push_back(result);
      continue;
    }
    const auto [entry, is_new] = steam_index.emplace(app_id, unique.size());
    if (is_new) {
      unique.push_back(result);
    } else if (SourceRank(result.source) > SourceRank(unique[entry->second].source)) {
      unique[entry->second] = result;
    }
  }
  return unique;
}

}  // namespace tarnwick
