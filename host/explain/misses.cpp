#include "host/explain/misses.h"

#include "foundation/machine/uninstall_key.h"
#include "foundation/text.h"
#include "host/explain/listed_games.h"
#include "host/explain/name_folding.h"
#include "host/explain/named_path.h"
#include "host/explain/question_words.h"
#include "launchers/bethesda_registry.h"
#include "launchers/epic_games_scan.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace tarnwick::host {
namespace {

using common::Heard;

// Kinds that only prepare another question: paths are made whole, folders looked up.
bool OnlyPrepares(const Heard& heard) {
  switch (heard.question.kind) {
    case QuestionKind::kFullPath:
    case QuestionKind::kKnownFolder:
    case QuestionKind::kEnvironment:
    case QuestionKind::kExpandText:
    case QuestionKind::kDrives:
    case QuestionKind::kDriveType:
    case QuestionKind::kProcess:
      return true;
    default:
      return false;
  }
}

bool AsksForPath(const Question& question) {
  return question.kind == QuestionKind::kAttributes || question.kind == QuestionKind::kStatus;
}

// What was asked for, whichever way and in whichever view.
std::string IdentityOf(const Question& question) {
  const bool value = question.kind == QuestionKind::kReadValue;
  const std::string what = AsksForPath(question) ? "path" : NameOf(question.kind);
  return ToLowerBytes(what + "\n" + PlainKey(question.subject) + (value ? "\n" + question.detail : ""));
}

std::set<std::string> Answered(const std::vector<Heard>& heard) {
  std::set<std::string> answered;
  for (const Heard& one : heard) {
    if (one.answer.given) answered.insert(IdentityOf(one.question));
  }
  return answered;
}

// The question without the view where other views were asked too: none of them had an answer here. Where a
// strategy knows one view alone, what it looks for may well be in the other.
std::string Words(const Heard& miss, const std::vector<Heard>& heard) {
  const std::string identity = IdentityOf(miss.question);
  const bool anywhere = std::any_of(heard.begin(), heard.end(), [&](const Heard& one) {
    return one.question.view != miss.question.view && IdentityOf(one.question) == identity;
  });
  Heard plain = miss;
  if (anywhere) plain.question.view = RegistryView::kNative;
  plain.question.subject = PlainKey(plain.question.subject);
  return MissInWords(plain);
}

const char* OthersOf(QuestionKind kind, size_t count) {
  if (kind == QuestionKind::kOpenKey) return count == 1 ? "key" : "keys";
  return count == 1 ? "place" : "places";
}

struct FailedRun {
  const Heard* first = nullptr;
  size_t others = 0;
};

bool IsTried(QuestionKind kind) {
  return kind == QuestionKind::kAttributes || kind == QuestionKind::kStatus || kind == QuestionKind::kOpenKey;
}

// Walks back from the last question that got nothing, over those of its kind that got nothing either.
FailedRun LastFailedRun(const std::vector<Heard>& heard) {
  const std::set<std::string> answered = Answered(heard);
  FailedRun run;
  std::set<std::string> tried;
  for (auto one = heard.rbegin(); one != heard.rend(); ++one) {
    const std::string identity = IdentityOf(one->question);
    if (answered.contains(identity)) {
      if (run.first != nullptr && !OnlyPrepares(*one)) break;
      continue;
    }
    if (run.first != nullptr && one->question.kind != run.first->question.kind) break;
    run.first = &*one;
    tried.insert(identity);
    if (!IsTried(one->question.kind)) break;
  }
  run.others = tried.empty() ? 0 : tried.size() - 1;
  return run;
}

std::string InWords(const FailedRun& run, const std::vector<Heard>& heard) {
  std::string words = Words(*run.first, heard);
  if (run.others > 0)
    words += fmt::format(" (nor {} other {})", run.others, OthersOf(run.first->question.kind, run.others));
  return words;
}

bool IsNameQuestion(const Heard& heard) {
  return heard.question.kind == QuestionKind::kReadValue && heard.question.detail == "DisplayName";
}

// The search by name is a strategy's last try: it counts where nothing was found out behind it.
std::string NameSearchMiss(const std::vector<Heard>& heard, const std::string& name) {
  std::set<std::string> asked;
  std::string parent;
  for (const Heard& one : heard) {
    if (!IsNameQuestion(one)) continue;
    if (TextOf(one.answer) == name) return {};
    asked.insert(one.question.subject);
    parent = one.question.subject.substr(0, one.question.subject.rfind('\\'));
  }
  if (asked.empty() || AsksForPath(heard.back().question)) return {};
  const std::string place = parent == kUninstallKey ? "no Uninstall entry" : "no entry of " + parent;
  return fmt::format("{} is called '{}' ({} asked)", place, name, asked.size());
}

// By the record's id at its source. Names count for all.
bool HasId(const StrategyWants& wants, const GameSignature& record, const ListedGame& game) {
  if (game.id.empty()) return false;
  if (record.GameGUID == game.id) return true;
  switch (record.SourceKind) {
    case kSourceBethesda:
      return BuildBethesdaRunUri(game.id) == record.LaunchUrl;
    case kSourceEpic:
      return BuildEpicLaunchUrl(game.id) == record.LaunchUrl;
    case kSourceUwp:
      return game.id == record.GameInfo;
    case kSourceMihoyo:
      return TrimCharacters(game.id, " \t") == TrimCharacters(record.SourceExId, " \t");
    case kSourceSteam:
      return game.id == record.SourceExId && std::string(wants.strategy).starts_with("Steam");
    case kSourceBattleNet:
      return game.id == record.SourceExId && wants.source == kSourceBattleNet;
    default:
      return false;
  }
}

bool IsTheRecords(const StrategyWants& wants, const GameSignature& record, const ListedGame& game) {
  if (HasId(wants, record, game) || game.place == record.RegistryKey) return true;
  return !game.name.empty() && FoldedName(game.name) == FoldedName(record.DisplayName);
}

std::string PlaceInWords(const ListedGame& game) {
  if (game.place.starts_with("HKEY_")) return "key " + game.place;
  const std::string file = LastPart(game.place);
  const bool manifest = file.ends_with(".acf") || file.ends_with(".item") || file == "AppxManifest.xml";
  return (manifest ? "manifest " : "file ") + file;
}

// "names folder 'X', which is missing". Windows answers 3 where the folder of a path is missing, 2 where only
// the file is.
std::string LeadMiss(const ListedGame& game, const std::string& lead, const Heard& miss) {
  const std::string place = PlaceInWords(game);
  const std::string plain = TrimTrailingSeparators(lead);
  const std::string shown = game.place.ends_with(".acf") ? LastPart(plain) : plain;
  const std::string& asked = miss.question.subject;
  if (ComparablePath(asked) == ComparablePath(lead))
    return fmt::format("{} names {}, which doesn't exist", place, shown);
  const std::string below = asked.size() > plain.size() + 1 ? asked.substr(plain.size() + 1) : asked;
  const bool folderIsMissing = miss.answer.text == "error 3" && below.find('\\') == std::string::npos;
  if (folderIsMissing) return fmt::format("{} names folder '{}', which is missing", place, shown);
  return fmt::format("{} names folder '{}', which has no {}", place, shown, below);
}

const Heard* LastMissBelow(const std::vector<Heard>& heard, const std::string& lead) {
  const std::set<std::string> answered = Answered(heard);
  const std::string place = ComparablePath(lead);
  const auto found = std::find_if(heard.rbegin(), heard.rend(), [&](const Heard& one) {
    return AsksForPath(one.question) && IsAtOrBelow(ComparablePath(one.question.subject), place) &&
           !answered.contains(IdentityOf(one.question));
  });
  return found == heard.rend() ? nullptr : &*found;
}

const Heard* MissOfKey(const std::vector<Heard>& heard, const std::string& key) {
  const std::set<std::string> answered = Answered(heard);
  const auto found = std::find_if(heard.rbegin(), heard.rend(), [&](const Heard& one) {
    return one.question.kind == QuestionKind::kReadValue && PlainKey(one.question.subject) == key &&
           !answered.contains(IdentityOf(one.question));
  });
  return found == heard.rend() ? nullptr : &*found;
}

std::string MissOfGame(const ListedGame& game, const std::vector<Heard>& heard, const std::string& launcher) {
  for (const std::string& lead : game.leads) {
    const Heard* miss = LastMissBelow(heard, lead);
    if (miss != nullptr) return LeadMiss(game, lead, *miss);
  }
  if (const Heard* miss = MissOfKey(heard, game.place); miss != nullptr) return Words(*miss, heard);
  const std::string name = game.name.empty() ? game.id : game.name;
  return fmt::format("{} lists '{}' ({}), but it isn't taken for an installed game", launcher, name,
                     PlaceInWords(game));
}

// A strategy that tries the record's executable in every folder of its list knows no game by name.
std::string TriedEverywhere(const GameSignature& record, const std::vector<Heard>& heard) {
  if (record.SourceKind != kSourceRiot || record.RunningExe.empty()) return {};
  const auto found = std::find_if(heard.rbegin(), heard.rend(), [&](const Heard& one) {
    return AsksForPath(one.question) && !one.answer.given &&
           ComparablePath(one.question.subject).ends_with(ComparablePath(record.RunningExe));
  });
  return found == heard.rend() ? std::string() : Words(*found, heard);
}

std::string WhyNoList(const std::vector<Heard>& heard, const std::string& launcher) {
  const FailedRun run = LastFailedRun(heard);
  return run.first == nullptr ? launcher + " lists no games" : InWords(run, heard);
}

}  // namespace

std::string LastMiss(const std::vector<Heard>& heard, const std::string& recordName) {
  const std::string search = heard.empty() ? std::string() : NameSearchMiss(heard, recordName);
  if (!search.empty()) return search;
  const FailedRun run = LastFailedRun(heard);
  return run.first == nullptr ? fmt::format("none of its {} questions failed", heard.size())
                              : InWords(run, heard);
}

std::string ListMiss(const StrategyWants& wants, const GameSignature& record, const std::vector<Heard>& heard,
                     const std::string& launcher) {
  const std::vector<ListedGame> listed = ListedGames(wants.strategy, heard);
  for (const ListedGame& game : listed) {
    if (IsTheRecords(wants, record, game)) return MissOfGame(game, heard, launcher);
  }
  if (listed.empty()) return WhyNoList(heard, launcher);
  const std::string tried = TriedEverywhere(record, heard);
  return tried.empty() ? fmt::format("{} lists no such game ({} looked at)", launcher, CountGames(listed))
                       : tried;
}

}  // namespace tarnwick::host
