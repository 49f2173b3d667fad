#include "host/explain/scan_findings.h"

#include "core/merge.h"
#include "core/steam_url.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

namespace tarnwick::host {
namespace {

// A result as a strategy gave it, and the entry of the answer that it is or went into.
struct Raw {
  const StrategyRun* run;
  const ScanResult* result;
  std::optional<size_t> entry;
};

// Results with one of these texts in common are the only ones that can merge.
using Places = std::map<std::string, std::vector<size_t>>;

using ResultIdentity = std::tuple<const std::string&, const std::string&, const std::string&,
                                  const std::string&, const std::string&, const std::string&>;

ResultIdentity Identity(const ScanResult& result) {
  return {result.name,   result.exePath,     result.launchUrl,
          result.source, result.displayIcon, result.sourceExId};
}

std::vector<Raw> RawResults(const ObservedScan& scan) {
  std::vector<Raw> raw;
  for (const StrategyRun& run : scan.runs) {
    for (const ScanResult& result : run.results) raw.push_back({&run, &result, {}});
  }
  return raw;
}

std::vector<std::string> KeysOf(const ScanResult& result) {
  std::vector<std::string> keys;
  if (!result.exePath.empty()) keys.push_back("path " + result.exePath);
  const std::string appId = SteamAppId(result.launchUrl);
  if (!appId.empty()) keys.push_back("app " + appId);
  return keys;
}

Places PlacesOf(const std::vector<Raw>& raw) {
  Places places;
  for (size_t i = 0; i < raw.size(); ++i) {
    for (const std::string& key : KeysOf(*raw[i].result)) places[key].push_back(i);
  }
  return places;
}

// Equal results can stand for one entry; the first of them does.
void MarkEntries(const ScanResults& unique, std::vector<Raw>& raw) {
  std::map<ResultIdentity, std::vector<size_t>> entries;
  for (size_t i = unique.size(); i-- > 0;) entries[Identity(unique[i])].push_back(i);
  for (Raw& one : raw) {
    const auto found = entries.find(Identity(*one.result));
    if (found == entries.end() || found->second.empty()) continue;
    one.entry = found->second.back();
    found->second.pop_back();
  }
}

// Does the library keep `kept` alone out of these two?
bool GoesInto(const std::vector<Raw>& raw, size_t dropped, size_t kept) {
  const auto [first, second] = std::minmax(dropped, kept);
  const ScanResults merged = MergeResults({*raw[first].result, *raw[second].result});
  return merged.size() == 1 && Identity(merged.front()) == Identity(*raw[kept].result);
}

std::string WhyMerged(const ScanResult& dropped, const ScanResult& kept) {
  const std::string appId = SteamAppId(dropped.launchUrl);
  if (appId.empty()) return "same path, found later";
  const int rank = SourceRank(dropped.source);
  const int keptRank = SourceRank(kept.source);
  return rank == keptRank
             ? fmt::format("same Steam app id {}, found later with a source of equal rank", appId)
             : fmt::format("same Steam app id {}, source of rank {} below {}", appId, rank, keptRank);
}

std::optional<size_t> KeptFor(const std::vector<Raw>& raw, const Places& places, size_t dropped) {
  for (const std::string& key : KeysOf(*raw[dropped].result)) {
    for (const size_t other : places.at(key)) {
      if (other != dropped && raw[other].entry && GoesInto(raw, dropped, other)) return other;
    }
  }
  return {};
}

// What goes into an entry, or into something that went into one itself: a result can take the place of the
// one whose path a third had.
void AddMerged(std::vector<Raw>& raw, std::vector<GameFinding>& findings) {
  const Places places = PlacesOf(raw);
  for (int distance = 0; distance < 2; ++distance) {
    const std::vector<Raw> known = raw;
    for (size_t i = 0; i < raw.size(); ++i) {
      if (known[i].entry) continue;
      const std::optional<size_t> kept = KeptFor(known, places, i);
      if (!kept) continue;
      raw[i].entry = known[*kept].entry;
      findings[*raw[i].entry].merged.push_back(
          {raw[i].run, raw[i].result, WhyMerged(*raw[i].result, *raw[*kept].result)});
    }
  }
}

void AddEvidence(const StrategyRun& run, std::vector<GameFinding>& findings) {
  std::vector<const ScanResult*> results;
  std::vector<GameFinding*> found;
  for (GameFinding& finding : findings) {
    if (finding.run != &run) continue;
    results.push_back(finding.result);
    found.push_back(&finding);
  }
  std::vector<Evidence> evidence = EvidenceFor(run.heard, results);
  for (size_t i = 0; i < found.size(); ++i) found[i]->evidence = std::move(evidence[i]);
}

}  // namespace

std::vector<GameFinding> FindingsOf(const ObservedScan& scan) {
  std::vector<Raw> raw = RawResults(scan);
  MarkEntries(scan.unique, raw);
  std::vector<GameFinding> findings(scan.unique.size());
  for (const Raw& one : raw) {
    if (one.entry) findings[*one.entry] = {one.run, one.result, {}, {}};
  }
  AddMerged(raw, findings);
  for (const StrategyRun& run : scan.runs) AddEvidence(run, findings);
  return findings;
}

}  // namespace tarnwick::host
