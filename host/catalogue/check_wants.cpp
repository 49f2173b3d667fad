// Reader: what the strategies want of a record, as a table.
#include "host/catalogue/check_wants.h"

#include "catalogue/element_name_reader.h"
#include "foundation/text.h"
#include "matching/signatures.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tarnwick::host {
namespace {

using G = GameSignature;
using Field = std::string G::*;

// At least one of these texts must be there, with the mark in it in any letter case.
struct Wanted {
  std::vector<Field> anyOf;
  const char* mark = "";
};

constexpr int32_t kAnySource = -1;

struct Wants {
  const char* strategy;
  std::vector<Wanted> texts;
  int32_t source = kAnySource;
  std::vector<int32_t> passedOver = {};
  Field passedOverWith = nullptr;  // of those, only such as have this text
  Field leftToOthers = nullptr;    // no record that has this text
};

const std::vector<Wants>& AllWants() {
  static const std::vector<Field> kExes = {&G::DefaultExe, &G::DefaultExe32, &G::DefaultExe64};
  static const std::vector<Field> kAllExes = {&G::DefaultExe,       &G::DefaultExe32,
                                              &G::DefaultExe64,     &G::DefaultFolderExe,
                                              &G::DefaultFolderExe32, &G::DefaultFolderExe64};
  // A 64-bit process never takes DefaultFolder64.
  static const std::vector<Field> kFolders = {&G::DefaultFolder, &G::DefaultFolder32};
  static const std::vector<Wants> kWants = {
      {"Steam Games Scan", {{{&G::SourceExId}}, {kAllExes}}, kSourceSteam},
      {"Epic Games Scan", {{{&G::LaunchUrl}}, {{&G::DefaultExe}}}, kSourceEpic},
      {"Battle.net Search V2", {{{&G::SourceExId}}, {kAllExes}}, kSourceBattleNet},
      {"Riot Platform Search", {{{&G::RunningExe}}}, kSourceRiot},
      {"Mihoyo Platform Search", {{{&G::SourceExId}}, {{&G::RunningExe, &G::DefaultExe}}}, kSourceMihoyo},
      {"Bethesda Registry", {{{&G::LaunchUrl}}, {{&G::DefaultExe}}}, kSourceBethesda},
      {"Arc Registry Search", {{{&G::RegistryKey}}}, kSourceArc},
      {"UWP/Microsoft Store Scan", {{{&G::GameInfo}}}, kSourceUwp},
      {"Default Exe Search",
       {{{&G::DefaultExe}}, {kFolders}},
       kAnySource,
       {kSourceSteam, kSourceEpic, kSourceUwp}},
      {"Default Registry Scan",
       {{{&G::RegistryKey}}, {kExes}},
       kAnySource,
       {kSourceSteam},
       nullptr,
       &G::RegistryPathKeyName},
      {"Registry Search Scan",
       {{{&G::RegistryKey}}, {{&G::RegistryPathKeyName}}},
       kAnySource,
       {kSourceSteam},
       &G::LaunchUrl},
      {"Uninstall Registry Search", {{{&G::GameGUID}}}, kAnySource, {kSourceSteam}},
      {"GameUX Registry Search", {{{&G::GameGUID}}}},
      {"User Folder Exe Search", {{{&G::DefaultExe}}, {kFolders, "userprofile"}}},
  };
  return kWants;
}

struct SourceRow {
  int32_t kind;
  std::string_view name;
};
constexpr SourceRow kSources[] = {
    {kSourceDirect, "DIRECT"}, {kSourceSteam, "STEAM"},   {kSourceEpic, "EPIC"},
    {kSourceGog, "GOG"},       {kSourceUplay, "UPLAY"},   {kSourceEa, "EA"},
    {kSourceUwp, "UWP"},       {kSourceBattleNet, "BATTLENET"}, {kSourceRiot, "RIOT"},
    {kSourceMihoyo, "MIHOYO"}, {kSourceArc, "ARC"},       {kSourceBethesda, "BETHESDA"},
};

bool IsThere(const G& record, Field field, const char* mark) {
  if (field == Field{&G::GameGUID}) return HasGameGuid(record);
  const std::string& text = record.*field;
  return !text.empty() && (*mark == '\0' || ToLowerBytes(text).find(mark) != text.npos);
}

bool IsMet(const Wanted& wanted, const G& record) {
  return std::ranges::any_of(wanted.anyOf, [&](Field field) { return IsThere(record, field, wanted.mark); });
}

// Could the strategy take the record if it had further texts?
bool TakesSource(const Wants& wants, const G& record) {
  if (wants.source != kAnySource) return wants.source == record.SourceKind;
  const bool passedOver = std::ranges::count(wants.passedOver, record.SourceKind) > 0;
  return !passedOver || (wants.passedOverWith != nullptr && (record.*wants.passedOverWith).empty());
}

bool IsOpenTo(const Wants& wants, const G& record) {
  return TakesSource(wants, record) &&
         (wants.leftToOthers == nullptr || (record.*wants.leftToOthers).empty());
}

size_t Missing(const Wants& wants, const G& record) {
  return static_cast<size_t>(
      std::ranges::count_if(wants.texts, [&](const Wanted& wanted) { return !IsMet(wanted, record); }));
}

std::string_view NameOfField(Field field) {
  const auto row = std::ranges::find(kElements, field, &CatalogueElement::field);
  return row == kElements.end() ? std::string_view() : row->name;
}

std::string Described(const Wanted& wanted) {
  std::string text;
  for (const Field field : wanted.anyOf) text.append(text.empty() ? "" : " or ").append(NameOfField(field));
  if (*wanted.mark != '\0') text.append(" with '").append(wanted.mark).append("' in it");
  return text;
}

std::string MissingTexts(const Wants& wants, const G& record) {
  std::string text;
  for (const Wanted& wanted : wants.texts) {
    if (!IsMet(wanted, record)) text.append(text.empty() ? "" : " and ").append(Described(wanted));
  }
  return text + " (" + wants.strategy + ")";
}

}  // namespace

bool IsEverTested(const GameSignature& record) {
  return std::ranges::any_of(AllWants(), [&](const Wants& wants) {
    return IsOpenTo(wants, record) && Missing(wants, record) == 0;
  });
}

std::string WhatWouldTest(const GameSignature& record) {
  constexpr size_t kMostNamed = 3;
  std::vector<const Wants*> open;
  for (const Wants& wants : AllWants()) {
    if (IsOpenTo(wants, record)) open.push_back(&wants);
  }
  std::ranges::stable_sort(open, {}, [&](const Wants* wants) { return Missing(*wants, record); });
  if (open.size() > kMostNamed) open.resize(kMostNamed);
  std::string text;
  for (const Wants* wants : open) text.append(text.empty() ? "" : "; or ").append(MissingTexts(*wants, record));
  return text;
}

std::string_view SourceName(int32_t kind) {
  const auto* const row = std::ranges::find(kSources, kind, &SourceRow::kind);
  return row == std::end(kSources) ? "none" : row->name;
}

}  // namespace tarnwick::host
