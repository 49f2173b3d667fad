#include "host/explain/path_explanation.h"

#include "common/wide_text.h"
#include "core/result_icons.h"
#include "foundation/com_scope.h"
#include "foundation/locks.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/paths.h"
#include "host/explain/named_path.h"
#include "host/explain/question_words.h"
#include "host/explain/record_search.h"
#include "inventory/app_cache.h"
#include "inventory/app_queries.h"
#include "inventory/icon_uris.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarnwick::host {
namespace {

using common::HeardQuestions;
using common::Narrow;

constexpr const char* kKindNames[] = {"missing", "file", "folder"};

std::wstring WidePath(const std::string& path) { return common::Wide(path, common::Malformed::kReplaced); }

PathKind KindOf(const std::wstring& path) {
  if (!ShellPathExists(path)) return PathKind::kMissing;
  return ShellFolderExists(path) ? PathKind::kFolder : PathKind::kFile;
}

bool Names(const Heard& heard, const std::string& place) {
  if (IsAtOrBelow(ComparablePath(heard.question.subject), place)) return true;
  const bool value = heard.question.kind == QuestionKind::kReadValue && heard.answer.given;
  return value && IsAtOrBelow(ComparablePath(heard.answer.text), place);
}

StrategyLead LeadOf(const StrategyRun& run, const std::string& place) {
  StrategyLead lead{run.strategy.name, {}, {}};
  std::copy_if(run.results.begin(), run.results.end(), std::back_inserter(lead.results),
               [&](const ScanResult& result) { return IsAtOrBelow(ComparablePath(result.exePath), place); });
  std::copy_if(run.heard.begin(), run.heard.end(), std::back_inserter(lead.heard),
               [&](const Heard& heard) { return Names(heard, place); });
  return lead;
}

void AddFoundRecords(const GameList& catalogue, const StrategyLead& lead, std::vector<RecordLead>& records) {
  for (const ScanResult& result : lead.results) {
    for (const GameSignature& game : catalogue) {
      if (tarnwick::IsFound(game, {result})) {
        records.push_back({game.DisplayName, lead.strategy, true, result.exePath});
      }
    }
  }
}

std::string LineOf(const Heard& heard) {
  return heard.answer.given ? QuestionInWords(heard.question) : MissInWords(heard);
}

// Those that led to nothing, but for which the strategy asked.
void AddAskingRecords(const StrategyRun& run, const StrategyLead& lead, const std::string& place,
                      std::vector<RecordLead>& records) {
  if (lead.heard.empty()) return;
  const auto asks = [&](const Heard& heard) { return Names(heard, place); };
  for (const AskingRecord& asking : RecordsThatAsk(run, asks, kMostRecordLeads)) {
    const bool known = std::any_of(records.begin(), records.end(), [&](const RecordLead& record) {
      return record.strategy == lead.strategy && record.record == asking.name;
    });
    if (known) continue;
    records.push_back({asking.name, lead.strategy, false, LineOf(asking.heard)});
  }
}

void AddStrategies(const ObservedScan& scan, const std::string& place, PathExplanation& explanation) {
  for (const StrategyRun& run : scan.runs) {
    StrategyLead lead = LeadOf(run, place);
    if (lead.results.empty() && lead.heard.empty()) continue;
    AddFoundRecords(scan.catalogue, lead, explanation.records);
    AddAskingRecords(run, lead, place, explanation.records);
    explanation.strategies.push_back(std::move(lead));
  }
}

// How an application leads to the path; null if it doesn't.
const char* HowItLeads(const ApplicationLead& app, const PathExplanation& explanation,
                       const std::string& place) {
  const std::string executable = ComparablePath(app.executable);
  const std::string folder = ComparablePath(app.folder);
  if (executable == place) return "executable";
  if (explanation.kind == PathKind::kFile) {
    const std::string holder = Narrow(FolderOf(WidePath(explanation.path), 32767));
    return !folder.empty() && ComparablePath(holder) == folder ? "in its folder" : nullptr;
  }
  return IsAtOrBelow(folder, place) || IsAtOrBelow(executable, place) ? "folder" : nullptr;
}

void AddApplications(const std::string& place, PathExplanation& explanation) {
  const CriticalSectionScope lock(g_cacheLock);
  RefreshCacheNoLock();
  for (AppRecord& record : g_appCache) {
    ResolveInstallLocation(record);
    ApplicationLead app{
        Narrow(record.DisplayName), Narrow(ListExecutable(record)), Narrow(record.InstallLocation), {}};
    const char* const how = HowItLeads(app, explanation, place);
    if (how == nullptr) continue;
    app.how = how;
    explanation.applications.push_back(std::move(app));
  }
}

const ScanResult* EntryAt(const ScanResults& entries, const std::string& place) {
  const auto found = std::find_if(entries.begin(), entries.end(), [&](const ScanResult& entry) {
    return IsAtOrBelow(ComparablePath(entry.exePath), place);
  });
  return found == entries.end() ? nullptr : &*found;
}

// As a scan, the details of an executable, or the list of applications takes it.
void AskForIcon(const ScanResult* entry, const PathExplanation& explanation) {
  const ComScope com;
  if (entry != nullptr) {
    BuildScanResultIcon(*entry);
  } else if (explanation.kind == PathKind::kFile) {
    FileIconUri(WidePath(explanation.path));
  } else {
    AppRecord record;
    record.InstallLocation = WidePath(explanation.path);
    AppIconUri(record);
  }
}

void AddIcon(const ObservedScan& scan, const std::string& place, PathExplanation& explanation) {
  const ScanResult* const entry = EntryAt(scan.unique, place);
  explanation.inScan = entry != nullptr;
  if (entry != nullptr) explanation.displayIcon = entry->displayIcon;
  if (explanation.kind == PathKind::kMissing) return;
  const HeardQuestions questions;
  AskForIcon(entry, explanation);
  explanation.icon = ExplainIcon(questions.All());
}

}  // namespace

const char* NameOf(PathKind kind) { return kKindNames[static_cast<int>(kind)]; }

PathExplanation ExplainPath(const std::string& path, const ObservedScan& scan) {
  PathExplanation explanation;
  explanation.subject = path;
  explanation.path = Narrow(MendSecondColon(WidePath(FullForm(path))));
  explanation.kind = KindOf(WidePath(explanation.path));
  const std::string place = ComparablePath(explanation.path);
  AddStrategies(scan, place, explanation);
  AddApplications(place, explanation);
  AddIcon(scan, place, explanation);
  return explanation;
}

bool IsFound(const PathExplanation& explanation) {
  return explanation.inScan ||
         std::any_of(explanation.applications.begin(), explanation.applications.end(),
                     [](const ApplicationLead& app) { return !app.executable.empty(); });
}

}  // namespace tarnwick::host
