// Edge: the Uninstall keys.
#include "host/capture/applications.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>

#include "common/wide_text.h"
#include "foundation/conversions.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/registry_keys.h"
#include "foundation/machine/uninstall_key.h"
#include "host/explain/name_folding.h"
#include "inventory/app_cache.h"
#include "inventory/app_queries.h"

namespace tarnwick::host {
namespace {

struct Root {
  RegistryRoot hive;
  RegistryView view;
};
constexpr Root kRoots[] = {{RegistryRoot::kLocalMachine, RegistryView::k64},
                           {RegistryRoot::kLocalMachine, RegistryView::k32},
                           {RegistryRoot::kCurrentUser, RegistryView::kNative}};

// What a scan tells about an entry's having to do with games. All texts are in lower case.
struct GameSigns {
  std::set<std::string> names;    // of records and of found games, loosely read
  std::set<std::wstring> texts;   // that name a key: the catalogue's and those that strategies read elsewhere
  std::set<std::wstring> places;  // paths that strategies asked for and that are there
};

std::wstring LastPart(const std::wstring& key) { return key.substr(key.find_last_of(L'\\') + 1); }

std::wstring LowerWide(const std::string& text) {
  return LowerText(common::Wide(text, common::Malformed::kReplaced));
}

void AddName(GameSigns& signs, const std::string& name) {
  const std::string loose = LooseName(name);
  if (!loose.empty()) signs.names.insert(loose);
}

bool IsUninstallText(const std::string& subject) {
  return LowerWide(subject).find(LowerWide(kUninstallSubkey)) != std::wstring::npos;
}

void AddHeard(GameSigns& signs, const Heard& heard) {
  if (!heard.answer.given) return;
  const Question& question = heard.question;
  if (question.kind == QuestionKind::kReadValue && !IsUninstallText(question.subject))
    signs.texts.insert(LowerWide(heard.answer.text.c_str()));
  const std::wstring path = FullDrivePath(Utf8ToWide(question.subject));
  if (!path.empty() && question.kind != QuestionKind::kFullPath && question.kind != QuestionKind::kExpandText)
    signs.places.insert(LowerText(path));
}

GameSigns SignsOf(const ObservedScan& scan) {
  GameSigns signs;
  for (const GameSignature& game : scan.catalogue) {
    AddName(signs, game.DisplayName);
    if (!game.RegistryKey.empty()) signs.texts.insert(LastPart(LowerWide(game.RegistryKey)));
  }
  for (const ScanResult& result : scan.all) {
    AddName(signs, result.name);
    signs.texts.insert(LastPart(LowerWide(result.source)));
  }
  for (const StrategyRun& run : scan.runs) {
    for (const Heard& heard : run.heard) AddHeard(signs, heard);
  }
  return signs;
}

// Folders that many an application stands in say nothing about one of them.
bool IsCommonFolder(const std::wstring& folder) {
  constexpr std::wstring_view kCommon[] = {L"program files", L"program files (x86)", L"windows", L"users",
                                           L"windows\\system32"};
  constexpr size_t kRootUnits = 3;
  return folder.size() <= kRootUnits ||
         std::ranges::find(kCommon, std::wstring_view(folder).substr(kRootUnits)) != std::end(kCommon);
}

std::wstring FolderText(std::wstring text) {
  std::erase(text, L'"');
  const std::wstring path = LowerText(FullDrivePath(ExpandVariables(text, 4095)));
  return IsCommonFolder(path) ? std::wstring() : path;
}

std::wstring IconFolder(const UninstallEntry& entry) {
  const std::wstring icon = TextValueOf(entry.place, L"DisplayIcon");
  const size_t end = icon.find_last_of(L"\\/");
  return end == std::wstring::npos ? std::wstring() : FolderText(icon.substr(0, end));
}

bool HasPlaceIn(const GameSigns& signs, const std::wstring& folder) {
  if (folder.empty()) return false;
  const auto next = signs.places.lower_bound(folder + L'\\');
  return signs.places.count(folder) > 0 || (next != signs.places.end() && next->starts_with(folder + L'\\'));
}

// The rules. One of them is enough.
bool StandsWhereAGameWasLookedFor(const UninstallEntry& entry, const GameSigns& signs) {
  return HasPlaceIn(signs, FolderText(TextValueOf(entry.place, L"InstallLocation"))) ||
         HasPlaceIn(signs, IconFolder(entry));
}

bool IsCalledLikeAGame(const UninstallEntry& entry, const GameSigns& signs) {
  return signs.names.count(LooseName(common::Narrow(entry.name))) > 0;
}

bool IsNamedByKey(const UninstallEntry& entry, const GameSigns& signs) {
  return signs.texts.count(LowerText(LastPart(entry.place.subkey))) > 0;
}

bool IsALaunchers(const UninstallEntry& entry, const GameSigns&) {
  constexpr std::wstring_view kNames[] = {L"steam", L"uplay", L"battle.net"};
  constexpr std::wstring_view kSchemes[] = {L"steam://", L"uplay://", L"bethesdanet://",
                                            L"com.epicgames.launcher://", L"goggalaxy://"};
  const std::wstring key = LowerText(LastPart(entry.place.subkey));
  const std::wstring command = LowerText(TextValueOf(entry.place, L"UninstallString"));
  return std::ranges::any_of(
             kNames, [&](auto name) { return key == name || key.starts_with(std::wstring(name) + L' '); }) ||
         std::ranges::any_of(kSchemes,
                             [&](auto scheme) { return command.find(scheme) != std::wstring::npos; });
}

using Rule = bool (*)(const UninstallEntry&, const GameSigns&);
constexpr Rule kRules[] = {StandsWhereAGameWasLookedFor, IsCalledLikeAGame, IsNamedByKey, IsALaunchers};

void AppendEntries(std::vector<UninstallEntry>& entries, const Root& root) {
  const KeyPlace parent{NameOf(root.hive), Utf8ToWide(kUninstallSubkey), root.view};
  for (const std::wstring& name : SubkeysOf(parent)) {
    const KeyPlace place{parent.hive, parent.subkey + L'\\' + name, root.view};
    entries.push_back({place, TextValueOf(place, L"DisplayName"), false});
  }
}

RegistryRoot RootOf(const KeyPlace& place) {
  return place.hive == NameOf(RegistryRoot::kLocalMachine) ? RegistryRoot::kLocalMachine
                                                           : RegistryRoot::kCurrentUser;
}

}  // namespace

std::vector<UninstallEntry> ListUninstallEntries() {
  std::vector<UninstallEntry> entries;
  for (const Root& root : kRoots) AppendEntries(entries, root);
  return entries;
}

void KeepEntries(std::vector<UninstallEntry>& entries, const ObservedScan& scan, bool all) {
  const GameSigns signs = SignsOf(scan);
  for (UninstallEntry& entry : entries) {
    entry.kept = all || std::ranges::any_of(kRules, [&](Rule rule) { return rule(entry, signs); });
  }
}

KeyTest LeftOutTest(const std::vector<UninstallEntry>& entries) {
  std::set<KeyPlace, KeyOrder> places;
  for (const UninstallEntry& entry : entries) {
    if (!entry.kept) places.insert(entry.place);
  }
  return [places](KeyPlace place) {
    while (places.count(place) == 0) {
      const size_t end = place.subkey.find_last_of(L'\\');
      if (end == std::wstring::npos) return false;
      place.subkey.resize(end);
    }
    return true;
  };
}

size_t CountLeftOut(const std::vector<UninstallEntry>& entries) {
  return static_cast<size_t>(std::ranges::count_if(
      entries, [](const UninstallEntry& entry) { return !entry.kept && !entry.name.empty(); }));
}

std::vector<AppRecord> KeptRecords(const std::vector<UninstallEntry>& entries) {
  std::vector<AppRecord> records;
  for (const UninstallEntry& entry : entries) {
    AppRecord record;
    const RegistryView view =
        entry.place.view == RegistryView::kNative ? RegistryView::k64 : entry.place.view;
    if (entry.kept && ReadAppRecord(OpenKey(RootOf(entry.place), entry.place.subkey, view), record))
      records.push_back(std::move(record));
  }
  return records;
}

}  // namespace tarnwick::host
