// Reader: the rules for a single record. Each looks at what the record means to say, so that one fault in the
// order of its elements is told once.
#include "host/catalogue/check_rules.h"

#include "catalogue/catalogue_reader.h"
#include "catalogue/element_text_reader.h"
#include "core/strategy_wants.h"
#include "foundation/text.h"
#include "host/catalogue/check_wants.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace tarnwick::host {
namespace {

using G = GameSignature;
using Field = std::string G::*;
using std::string;
using std::string_view;

constexpr size_t kNone = string_view::npos;
constexpr size_t kMostName = 120;

void Report(Findings& findings, const RecordCheck& record, Check check, size_t at, string message) {
  AddFinding(findings, {at, check, record.name, std::move(message)});
}

void ReportField(Findings& findings, const RecordCheck& record, Check check, Field field,
                 const string& what) {
  const size_t element = ElementOf(field);
  Report(findings, record, check, PlaceOf(record, element),
         string(kElements[element].name) + " " + Quoted(record.meant.*field) + " " + what);
}

string Tag(string_view name) { return "<" + Shortened(name, kMostName) + ">"; }

// ---- Tags.

struct OddityRow {
  Oddity oddity;
  Check check;
  const char* what;
};
constexpr OddityRow kOddities[] = {
    {Oddity::kUnknown, kUnknownElement, " is no element of a record: the library doesn't look at it"},
    {Oddity::kRepeated, kRepeatedElement, " stands here again: the library reads the first"},
    {Oddity::kBlankInClosing, kSkippedElement,
     " is closed by a tag that the library doesn't take for its own"},
    {Oddity::kRecordInside, kRecordNotClosed,
     " is not closed before the next one opens: the two are read as one"},
    {Oddity::kRecordSkipped, kSkippedRecord, " is not written as the library searches for it"},
};

void CheckOddTags(const RecordCheck& record, Findings& findings) {
  bool runsOn = false;
  for (const OddTag& tag : record.place.oddTags) {
    // Every element of a record that was run into stands twice.
    if (runsOn && (tag.oddity == Oddity::kRepeated || tag.oddity == Oddity::kRecordInside)) continue;
    const auto* const row = std::ranges::find(kOddities, tag.oddity, &OddityRow::oddity);
    runsOn = runsOn || tag.oddity == Oddity::kRecordInside;
    const size_t at = tag.oddity == Oddity::kRecordInside ? record.place.open : tag.at;
    Report(findings, record, row->check, at, Tag(tag.name) + row->what);
  }
}

string_view TagAt(const RecordCheck& record, size_t at) {
  const size_t end = record.text.find('>', at);
  return record.text.substr(at, end - at);
}

string_view NameIn(string_view tag) { return tag.substr(1, tag.find_first_of(" \t\r\n\v\f/=<", 1) - 1); }

void CheckSwallowed(const RecordCheck& record, Findings& findings) {
  for (size_t element = 0; element < kRecordElement; ++element) {
    const ElementPlace& place = record.place.elements[element];
    if (place.own == kNowhere || place.own == place.tag) continue;
    const string read = FieldText(element, TextOf(record.text, place.text));
    const string own = FieldText(element, TextOf(record.text, OwnText(record.text, record.place, element)));
    if (read == own) continue;
    Report(findings, record, kSwallowedElement, place.own,
           string(kElements[element].name) + " becomes " + Quoted(read) + ": " +
               Tag(NameIn(TagAt(record, place.tag))) + " stands ahead of it");
  }
}

bool HasText(const RecordCheck& record, size_t element, size_t from) {
  const string_view block = record.text.substr(0, record.place.end);
  const size_t close = block.find("</" + string(kElements[element].name) + ">", from);
  return close != kNone && !NormalizeElementText(block.substr(from, close - from)).empty();
}

// What an element's attributes do to its text, or nothing.
const char* AttributeFault(const RecordCheck& record, size_t element, string_view tag, size_t behind) {
  if (std::ranges::count(tag, '"') % 2 != 0 || std::ranges::count(tag, '\'') % 2 != 0)
    return " has a '>' in an attribute, where the library ends the tag";
  if (tag.back() == '/' || tag.find(kNilAttribute) == kNone || !HasText(record, element, behind))
    return nullptr;
  return " has a text and i:nil=\"true\", so the library leaves it empty";
}

void CheckAttributes(const RecordCheck& record, Findings& findings) {
  for (size_t element = 0; element < kRecordElement; ++element) {
    const size_t own = record.place.elements[element].own;
    if (own == kNowhere) continue;
    const string_view tag = TagAt(record, own);
    if (tag.size() == kElements[element].name.size() + 1) continue;
    const char* const fault = AttributeFault(record, element, tag, own + tag.size() + 1);
    if (fault != nullptr)
      Report(findings, record, kSkippedElement, own, Tag(kElements[element].name) + fault);
  }
}

// ---- Texts.

bool IsNameByte(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         byte == '#';
}

// The first "&name;" in a text, with its ends; empty if there is none.
string_view ReferenceIn(string_view text) {
  for (size_t at = text.find('&'); at != kNone; at = text.find('&', at + 1)) {
    size_t end = at + 1;
    while (end < text.size() && IsNameByte(text[end])) ++end;
    if (end > at + 1 && end < text.size() && text[end] == ';') return text.substr(at, end + 1 - at);
  }
  return {};
}

void CheckText(const RecordCheck& record, size_t element, Findings& findings) {
  const Span span = OwnText(record.text, record.place, element);
  const string_view raw = TextOf(record.text, span);
  const string name(kElements[element].name);
  if (const size_t markup = raw.find('<'); markup != kNone) {
    Report(findings, record, kMarkupInText, span.begin + markup,
           name + " keeps the markup: it becomes " + Quoted(raw));
    return;
  }
  const string normal = NormalizeElementText(raw);
  if (normal != raw)
    Report(findings, record, kWhiteSpace, span.begin, name + " is read as " + Quoted(normal));
  if (element == kSourceElement || raw.find('&') == kNone) return;
  const string field = DecodeEntities(normal);
  if (const string_view left = ReferenceIn(field); !left.empty())
    Report(findings, record, kEntityLeft, span.begin, name + " keeps " + Quoted(left));
}

void CheckTexts(const RecordCheck& record, Findings& findings) {
  for (size_t element = 0; element < kRecordElement; ++element) CheckText(record, element, findings);
}

// ---- Sources.

bool IsAppId(const string& text) {
  uint32_t id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  return error == std::errc() && end == text.data() + text.size() && text.front() != '0';
}

string SourceText(const RecordCheck& record) {
  return NormalizeElementText(TextOf(record.text, OwnText(record.text, record.place, kSourceElement)));
}

// Is something amiss with the record's source, told under a code of its own?
bool CheckSource(const RecordCheck& record, Findings& findings) {
  const string source = SourceText(record);
  const G& game = record.meant;
  const size_t at = PlaceOf(record, kSourceElement);
  if (game.SourceKind == kSourceNone && !source.empty()) {
    Report(findings, record, kNoSource, at,
           "SourceEx " + Quoted(source) + " is no source: the library reads none");
  } else if (game.SourceKind == kSourceSteam && game.SourceExId.empty()) {
    Report(findings, record, kSteamWithoutId, at, "a Steam record needs SourceExId, the game's app id");
  } else if (game.SourceKind == kSourceSteam && !IsAppId(game.SourceExId)) {
    ReportField(findings, record, kSteamIdNoNumber, &G::SourceExId, "is no app id of Steam");
  } else if (game.SourceKind == kSourceUwp && game.GameInfo.empty()) {
    Report(findings, record, kStoreWithoutFamily, at, "a UWP record needs GameInfo, the package family name");
  } else {
    return false;
  }
  return true;
}

void CheckUse(const RecordCheck& record, Findings& findings) {
  if (record.meant.DisplayName.empty())
    Report(findings, record, kNoName, record.place.open, "the record has no DisplayName");
  if (CheckSource(record, findings) || IsEverTested(record.meant)) return;
  Report(findings, record, kNeverTested, record.place.open,
         "no strategy ever tests the record; it lacks " + WhatWouldTest(record.meant));
}

// ---- Fields.

void CheckGuid(const RecordCheck& record, Findings& findings) {
  if (record.meant.GameGUID.find_first_of("{}") != kNone)
    ReportField(findings, record, kGuidBraces, &G::GameGUID, "has braces, so it equals no product's");
}

constexpr string_view kHives[] = {"HKEY_LOCAL_MACHINE", "HKEY_CURRENT_USER", "HKEY_USERS",
                                  "HKEY_CLASSES_ROOT"};

struct ShortHive {
  string_view name;
  string_view hive;
};
constexpr ShortHive kShortHives[] = {
    {"HKLM", kHives[0]}, {"HKCU", kHives[1]}, {"HKU", kHives[2]}, {"HKCR", kHives[3]}};

string HiveFault(string_view head) {
  const string upper = ToUpperBytes(string(head));
  for (const ShortHive& row : kShortHives) {
    if (row.name == upper)
      return "begins with " + string(head) + ": the library knows it as " + string(row.hive);
  }
  for (const string_view hive : kHives) {
    if (upper.starts_with(hive)) return "has its hive not exactly as " + string(hive) + "\\";
  }
  return "begins with no hive that the library knows";
}

void CheckRegistryKey(const RecordCheck& record, Findings& findings) {
  const string& key = record.meant.RegistryKey;
  const string_view head = string_view(key).substr(0, key.find('\\'));
  if (key.empty() || std::ranges::count(kHives, head) > 0) return;
  ReportField(findings, record, kRegistryHive, &G::RegistryKey, HiveFault(head));
}

constexpr Field kFolders[] = {&G::DefaultFolder, &G::DefaultFolder32, &G::DefaultFolder64};

bool IsSeparator(char byte) { return byte == '\\' || byte == '/'; }

bool IsDriveAlone(const string& folder) {
  if (folder.size() < 2 || folder[1] != ':') return false;
  return folder.size() == 2 || (folder.size() == 3 && IsSeparator(folder[2]));
}

// The expansion takes one character behind the variable with it.
bool IsBackslashEaten(const string& folder) {
  constexpr string_view kVariable = "%ProgramFiles%";
  const size_t at = folder.find(kVariable);
  if (at == kNone || at + kVariable.size() == folder.size()) return false;
  const string_view rest = string_view(folder).substr(at + kVariable.size());
  return !IsSeparator(rest[0]) || (rest.size() > 1 && !IsSeparator(rest[1]));
}

void CheckFolders(const RecordCheck& record, Findings& findings) {
  for (const Field field : kFolders) {
    const string& folder = record.meant.*field;
    if (IsDriveAlone(folder)) {
      const bool bare = folder.size() == 2;
      ReportField(findings, record, kDriveAlone, field,
                  bare ? "ends the whole search that comes upon it" : "is the drive's root");
    }
    if (IsBackslashEaten(folder))
      ReportField(findings, record, kEatenBackslash, field,
                  "loses the character behind the variable when it is expanded");
  }
}

constexpr Field kExes[] = {&G::DefaultExe, &G::DefaultExe32, &G::DefaultExe64};
constexpr string_view kCommonExes[] = {
    "app",     "application", "autorun",   "bootstrap", "client",    "config", "crashhandler", "engine",
    "game",    "game32",      "game64",    "install",   "installer", "launch", "launcher",     "loader",
    "main",    "patcher",     "play",      "player",    "run",       "setup",  "settings",     "start",
    "starter", "startup",     "uninstall", "update",    "updater"};

void CheckExes(const RecordCheck& record, Findings& findings) {
  for (const Field field : kExes) {
    const string lower = ToLowerBytes(record.meant.*field);
    if (!lower.ends_with(".exe")) continue;
    const string_view stem = string_view(lower).substr(0, lower.size() - 4);
    if (std::ranges::count(kCommonExes, stem) == 0) continue;
    ReportField(findings, record, kCommonExe, field, "is the executable of many games");
  }
}

// ---- Launch URLs.

struct UrlScheme {
  string_view scheme;
  int32_t source;
};
constexpr UrlScheme kSchemes[] = {
    {"steam:", kSourceSteam},
    {"com.epicgames.launcher:", kSourceEpic},
    {"goggalaxy:", kSourceGog},
    {"uplay:", kSourceUplay},
    {"ubisoftconnect:", kSourceUplay},
    {"origin:", kSourceEa},
    {"origin2:", kSourceEa},
    {"link2ea:", kSourceEa},
    {"battlenet:", kSourceBattleNet},
    {"battle.net:", kSourceBattleNet},
    {"shell:appsfolder", kSourceUwp},
    {"riotclient:", kSourceRiot},
    {"arc:", kSourceArc},
    {"bethesdanet:", kSourceBethesda},
};

// Sources whose strategies compare the URL with one that they make: it must be of that very form.
struct UrlForm {
  int32_t source;
  string_view begin, end;
};
constexpr UrlForm kForms[] = {
    {kSourceEpic, "com.epicgames.launcher://apps/", "?action=launch&silent=true"},
    {kSourceBethesda, "bethesdanet://run/", ""},
};

bool HasForm(const string& url, const UrlForm& form) {
  return url.size() > form.begin.size() + form.end.size() && url.starts_with(form.begin) &&
         url.ends_with(form.end);
}

string OtherSource(const G& game) {
  const string lower = ToLowerBytes(game.LaunchUrl);
  for (const UrlScheme& row : kSchemes) {
    if (!lower.starts_with(row.scheme) || row.source == game.SourceKind) continue;
    return "is one of " + string(NameOfSource(row.source)) + ", the record's source is " +
           string(NameOfSource(game.SourceKind));
  }
  return {};
}

// What a Steam URL runs, if it is a number.
string_view SteamUrlId(string_view url) {
  const size_t digits = url.find_first_of("0123456789");
  return digits == kNone ? string_view()
                         : url.substr(digits, url.find_first_not_of("0123456789", digits) - digits);
}

string UrlFault(const G& game) {
  if (game.LaunchUrl.empty()) return {};
  if (string other = OtherSource(game); !other.empty()) return other;
  const auto* const form = std::ranges::find(kForms, game.SourceKind, &UrlForm::source);
  if (form != std::end(kForms) && !HasForm(game.LaunchUrl, *form))
    return "never equals the URL that is searched for, " + string(form->begin) + "..." + string(form->end);
  const bool steam = game.SourceKind == kSourceSteam && game.LaunchUrl.starts_with("steam:");
  const string_view id = steam ? SteamUrlId(game.LaunchUrl) : string_view();
  if (!id.empty() && id != game.SourceExId && IsAppId(game.SourceExId))
    return "runs another app than SourceExId " + game.SourceExId;
  return {};
}

void CheckUrl(const RecordCheck& record, Findings& findings) {
  const G& game = record.meant;
  if (const string fault = UrlFault(game); !fault.empty())
    ReportField(findings, record, kForeignUrl, &G::LaunchUrl, fault);
  const bool searched = !game.RegistryKey.empty() && !game.RegistryPathKeyName.empty();
  if (game.SourceKind == kSourceSteam && searched && !game.LaunchUrl.empty())
    ReportField(findings, record, kHidingUrl, &G::LaunchUrl,
                "keeps the Registry Search Scan from the record");
}

using Rule = void (*)(const RecordCheck&, Findings&);
constexpr Rule kRules[] = {CheckOddTags, CheckSwallowed,   CheckAttributes, CheckTexts, CheckUse,
                           CheckGuid,    CheckRegistryKey, CheckFolders,    CheckExes,  CheckUrl};

}  // namespace

size_t ElementOf(Field field) {
  return static_cast<size_t>(std::ranges::find(kElements, field, &CatalogueElement::field) -
                             kElements.begin());
}

RecordCheck MeantRecord(string_view text, const RecordPlace& place) {
  RecordCheck record{text, place, {}, {}};
  for (size_t element = 0; element < kRecordElement; ++element) {
    const string field = FieldText(element, TextOf(text, OwnText(text, place, element)));
    if (element == kSourceElement) {
      record.meant.SourceKind = ParseSourceKind(field);
    } else {
      record.meant.*kElements[element].field = field;
    }
  }
  record.name = Shortened(record.meant.DisplayName, kMostName);
  return record;
}

size_t PlaceOf(const RecordCheck& record, size_t element) {
  const Span span = OwnText(record.text, record.place, element);
  if (span.Exists()) return span.begin;
  const size_t own = record.place.elements[element].own;
  return own == kNowhere ? record.place.open : own;
}

void CheckRecord(const RecordCheck& record, Findings& findings) {
  for (const Rule rule : kRules) rule(record, findings);
}

}  // namespace tarnwick::host
