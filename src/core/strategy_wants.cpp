// Reader: what the strategies want of a record, as data.
#include "core/strategy_wants.h"

#include "foundation/text.h"
#include "matching/signatures.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace tarnwick {
namespace {

using Field = std::string GameSignature::*;
using G = GameSignature;

constexpr CatalogueUse kEach = CatalogueUse::kEachRecord;
constexpr CatalogueUse kLookup = CatalogueUse::kLookup;
constexpr CatalogueUse kHelp = CatalogueUse::kHelp;
constexpr CatalogueUse kNone = CatalogueUse::kNone;

struct FieldName {
  const char* name;
  Field field;
};

const FieldName kFieldNames[] = {
    {"DisplayName", &G::DisplayName},
    {"RegistryKey", &G::RegistryKey},
    {"RegistryPathKeyName", &G::RegistryPathKeyName},
    {"DefaultExe", &G::DefaultExe},
    {"DefaultExe32", &G::DefaultExe32},
    {"DefaultExe64", &G::DefaultExe64},
    {"DefaultFolderExe", &G::DefaultFolderExe},
    {"DefaultFolderExe32", &G::DefaultFolderExe32},
    {"DefaultFolderExe64", &G::DefaultFolderExe64},
    {"DefaultFolder", &G::DefaultFolder},
    {"DefaultFolder32", &G::DefaultFolder32},
    {"DefaultFolder64", &G::DefaultFolder64},
    {"GameGUID", &G::GameGUID},
    {"GameInfo", &G::GameInfo},
    {"SourceExId", &G::SourceExId},
    {"LaunchUrl", &G::LaunchUrl},
    {"RunningExe", &G::RunningExe},
};

struct SourceName {
  int32_t kind;
  const char* name;
};

constexpr SourceName kSourceNames[] = {
    {kSourceNone, "none"},
    {kSourceDirect, "DIRECT"},
    {kSourceSteam, "STEAM"},
    {kSourceEpic, "EPIC"},
    {kSourceGog, "GOG"},
    {kSourceUplay, "UPLAY"},
    {kSourceEa, "EA"},
    {kSourceBattleNet, "BATTLENET"},
    {kSourceUwp, "UWP"},
    {kSourceRiot, "RIOT"},
    {kSourceMihoyo, "MIHOYO"},
    {kSourceArc, "ARC"},
    {kSourceBethesda, "BETHESDA"},
};

WantedText One(Field field, const char* mark = "") { return {{field}, mark, false}; }
WantedText Later(std::vector<Field> anyOf, const char* mark = "") { return {std::move(anyOf), mark, true}; }

const std::vector<Field> kExes = {&G::DefaultExe, &G::DefaultExe32, &G::DefaultExe64};
const std::vector<Field> kAllExes = {&G::DefaultExe,       &G::DefaultExe32,       &G::DefaultExe64,
                                     &G::DefaultFolderExe, &G::DefaultFolderExe32, &G::DefaultFolderExe64};
// A 64-bit process never takes DefaultFolder64.
const std::vector<Field> kFolders = {&G::DefaultFolder, &G::DefaultFolder32};

std::string JoinedNames(const std::vector<Field>& fields) {
  std::string names;
  for (size_t i = 0; i < fields.size(); ++i) {
    if (i > 0) names += i + 1 == fields.size() ? " or " : ", ";
    names += NameOfField(fields[i]);
  }
  return names;
}

bool Holds(const std::string& text, const char* mark) {
  return ToLowerBytes(text).find(mark) != std::string::npos;
}

bool IsThere(const GameSignature& record, Field field) {
  return field == Field{&G::GameGUID} ? HasGameGuid(record) : !(record.*field).empty();
}

std::string WhyTextMissing(const WantedText& text, const GameSignature& record) {
  const auto there =
      std::find_if(text.anyOf.begin(), text.anyOf.end(), [&](Field field) { return IsThere(record, field); });
  if (there == text.anyOf.end()) return "the record has no " + JoinedNames(text.anyOf);
  if (Holds(record.**there, text.mark)) return {};
  return std::string("the record's ") + NameOfField(*there) + " has no '" + text.mark + "' in it";
}

std::string WhySourceRefused(const StrategyWants& wants, const GameSignature& record) {
  if (wants.source != kAnySource && record.SourceKind != wants.source) {
    const bool none = record.SourceKind == kSourceNone;
    return std::string("takes records of source ") + NameOfSource(wants.source) + " alone, and this one " +
           (none ? "has none" : std::string("is of ") + NameOfSource(record.SourceKind));
  }
  const bool refused = std::find(wants.passedOver.begin(), wants.passedOver.end(), record.SourceKind) !=
                       wants.passedOver.end();
  if (!refused || (wants.passedOverWith != nullptr && (record.*wants.passedOverWith).empty())) return {};
  std::string why = std::string("passes over records of source ") + NameOfSource(record.SourceKind);
  if (wants.passedOverWith != nullptr) why += std::string(" with a ") + NameOfField(wants.passedOverWith);
  return why;
}

}  // namespace

const std::vector<StrategyWants>& AllStrategyWants() {
  static const std::vector<StrategyWants> kWants = {
      {"Default Registry Scan",
       kEach,
       {One(&G::RegistryKey), Later(kExes)},
       kAnySource,
       {kSourceSteam},
       nullptr,
       &G::RegistryPathKeyName},
      {"Registry Search Scan",
       kEach,
       {One(&G::RegistryKey), One(&G::RegistryPathKeyName)},
       kAnySource,
       {kSourceSteam},
       &G::LaunchUrl},
      {"Uninstall Registry Search", kEach, {One(&G::GameGUID)}, kAnySource, {kSourceSteam}},
      {"User Folder Exe Search", kEach, {One(&G::DefaultExe), {kFolders, "userprofile"}}},
      {"GameUX Registry Search", kLookup, {One(&G::GameGUID)}},
      {"Default Exe Search",
       kEach,
       {One(&G::DefaultExe), {kFolders}},
       kAnySource,
       {kSourceSteam, kSourceEpic, kSourceUwp}},
      {"Steam Shortcuts Search", kNone},
      {"Arc Registry Search", kHelp, {One(&G::RegistryKey)}, kSourceArc},
      {"GOG Registry Search", kNone},
      {"Uplay Configuration Search", kNone},
      {"EA Registry Search", kNone},
      {"Riot Platform Search", kLookup, {One(&G::RunningExe)}, kSourceRiot},
      {"Mihoyo Platform Search",
       kLookup,
       {One(&G::SourceExId), Later({&G::RunningExe, &G::DefaultExe})},
       kSourceMihoyo},
      {"Bethesda Registry", kLookup, {One(&G::LaunchUrl), Later({&G::DefaultExe})}, kSourceBethesda},
      {"Itch.io Search", kNone},
      {"Twitch Search", kNone},
      {"GameUX Info Search", kNone},
      {"Epic Games Scan", kHelp, {One(&G::LaunchUrl), One(&G::DefaultExe)}, kSourceEpic},
      {"UWP/Microsoft Store Scan", kHelp, {One(&G::GameInfo), One(&G::DefaultExe)}, kSourceUwp},
      {"Battle.net Search V2", kHelp, {One(&G::SourceExId), {kAllExes}}, kSourceBattleNet},
      {"Steam Games Scan", kLookup, {One(&G::SourceExId), {kAllExes}}, kSourceSteam},
      {"Steam Default ID",
       kEach,
       {One(&G::SourceExId), Later({&G::DefaultExe}), Later({&G::DefaultFolder}, "steamapps")},
       kSourceSteam},
      {"Steam AppInfo Scan", kNone},
  };
  return kWants;
}

const StrategyWants& WantsOf(const std::string& strategy) {
  for (const StrategyWants& wants : AllStrategyWants()) {
    if (wants.strategy == strategy) return wants;
  }
  throw std::out_of_range("no strategy " + strategy);
}

const char* NameOfField(Field field) {
  const auto found = std::find_if(std::begin(kFieldNames), std::end(kFieldNames),
                                  [&](const FieldName& row) { return row.field == field; });
  return found == std::end(kFieldNames) ? "" : found->name;
}

const char* NameOfSource(int32_t sourceKind) {
  const auto found = std::find_if(std::begin(kSourceNames), std::end(kSourceNames),
                                  [&](const SourceName& row) { return row.kind == sourceKind; });
  return found == std::end(kSourceNames) ? "none" : found->name;
}

std::string WhyNotTaken(const StrategyWants& wants, const GameSignature& record) {
  if (wants.use == CatalogueUse::kNone || wants.use == CatalogueUse::kHelp) return {};
  std::string why = WhySourceRefused(wants, record);
  for (const WantedText& text : wants.texts) {
    if (why.empty()) why = WhyTextMissing(text, record);
  }
  if (!why.empty() || wants.leftToOthersWith == nullptr || (record.*wants.leftToOthersWith).empty())
    return why;
  return std::string("leaves records with a ") + NameOfField(wants.leftToOthersWith) + " to others";
}

}  // namespace tarnwick
