// Reader: the rules for a catalogue as a whole.
#include "host/catalogue/check_text.h"

#include "core/strategy_wants.h"
#include "host/catalogue/check_encoding.h"
#include "host/catalogue/check_layout.h"
#include "host/catalogue/check_rules.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

namespace tarnwick::host {
namespace {

using std::string;
using std::string_view;

constexpr size_t kNone = string_view::npos;

void Report(Findings& findings, Check check, size_t at, string message) {
  AddFinding(findings, {at, check, {}, std::move(message)});
}

// ---- Bytes.

bool IsCipherText(string_view text) {
  const size_t first = text.find_first_not_of(" \t\r\n");
  return first != kNone && text[first] != '<' && text.find("<GameSignature") == kNone && LooksBinary(text);
}

void CheckDeclaration(string_view text, Findings& findings) {
  const string_view encoding = DeclaredEncoding(text);
  if (encoding.empty() || NamesUtf8(encoding)) return;
  Report(findings, kOtherEncoding, static_cast<size_t>(encoding.data() - text.data()),
         "the declaration names " + Quoted(encoding) + ": the library reads UTF-8");
}

// Once for each line.
void CheckBytes(string_view text, Findings& findings) {
  for (size_t at = FirstNoUtf8(text); at != kNone; at = FirstNoUtf8(text, at)) {
    constexpr string_view kDigits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(text[at]);
    Report(findings, kNoUtf8, at,
           string("the byte 0x") + kDigits[byte >> 4] + kDigits[byte & 15] + " is no UTF-8 here");
    at = text.find('\n', at);
    if (at == kNone) return;
  }
}

// ---- Comments. The library doesn't know them.

struct Comments {
  string_view text;
  Span current{0, 0};
  bool told = false;
};

// Moves on to the first comment that ends behind `at`; asked for ascending places only.
void MoveTo(Comments& comments, size_t at) {
  while (comments.current.Exists() && comments.current.end <= at) {
    const size_t begin = comments.text.find("<!--", comments.current.end);
    const size_t end = begin == kNone ? kNone : comments.text.find("-->", begin + 4);
    comments.current = {begin, end == kNone ? comments.text.size() + 1 : end + 3};
    comments.told = false;
  }
}

bool HidesNothing(const Comments& comments, const RecordPlace& place) {
  const auto inside = [&](size_t at) { return comments.current.begin < at && at < comments.current.end; };
  return inside(place.open) || std::ranges::any_of(place.elements, [&](const ElementPlace& element) {
           return element.tag != kNowhere && inside(element.tag);
         });
}

void CheckComments(Comments& comments, const RecordCheck& record, Findings& findings) {
  for (MoveTo(comments, record.place.open); comments.current.begin < record.place.end;
       MoveTo(comments, comments.current.end)) {
    if (!comments.told && HidesNothing(comments, record.place)) {
      const bool whole = comments.current.begin < record.place.open;
      AddFinding(findings, {comments.current.begin, kReadInComment, record.name,
                            whole ? "the record in this comment is read all the same"
                                  : "the elements in this comment are read all the same"});
      comments.told = true;
    }
    if (comments.current.end > record.place.end) return;
  }
}

// ---- Duplicates.

// What a source's strategy knows a game by.
struct SourceId {
  int32_t source;
  string GameSignature::* field;
};
constexpr SourceId kSourceIds[] = {{kSourceUwp, &GameSignature::GameInfo},
                                   {kSourceBethesda, &GameSignature::LaunchUrl},
                                   {kSourceArc, &GameSignature::RegistryKey},
                                   {kSourceRiot, &GameSignature::RunningExe}};

const string& IdOf(const GameSignature& game) {
  const auto* const row = std::ranges::find(kSourceIds, game.SourceKind, &SourceId::source);
  const bool other = game.SourceExId.empty() && row != std::end(kSourceIds);
  return other ? game.*(row->field) : game.SourceExId;
}

using Seen = std::unordered_map<string, size_t>;  // by source and text: where the record stands

// Where the first record with this key stands; kNowhere if this is the first, or the text is empty.
size_t FirstOf(Seen& seen, int32_t source, const string& text, size_t at) {
  if (text.empty()) return kNowhere;
  const auto [entry, fresh] = seen.try_emplace(std::to_string(source) + ' ' + text, at);
  return fresh ? kNowhere : entry->second;
}

struct Duplicates {
  Seen names;
  Seen ids;
};

void CheckDuplicates(Duplicates& seen, const RecordCheck& record, Findings& findings) {
  const GameSignature& game = record.meant;
  const size_t at = record.place.open;
  const size_t sameName = FirstOf(seen.names, game.SourceKind, game.DisplayName, at);
  const bool sameId = FirstOf(seen.ids, game.SourceKind, IdOf(game), at) != kNowhere;
  const string source(NameOfSource(game.SourceKind));
  if (sameId) {
    AddFinding(findings,
               {at, kSameId, record.name,
                "an earlier record has source " + source + " and id " + Quoted(IdOf(game)) + " too"});
  } else if (sameName != kNowhere) {
    AddFinding(findings,
               {at, kSameName, record.name,
                "an earlier record has name " + Quoted(game.DisplayName) + " and source " + source + " too"});
  }
}

// ---- Records.

struct TextCheck {
  string_view text;
  Comments comments;
  Duplicates duplicates;
};

void CheckGap(const TextCheck& check, size_t from, size_t to, Findings& findings) {
  for (const OddTag& tag : SkippedRecords(check.text, from, to)) {
    Report(findings, kSkippedRecord, tag.at,
           "<" + Shortened(tag.name, 80) +
               "> is not written as the library searches for it: the record is skipped");
  }
}

void CheckRecords(TextCheck& check, Findings& findings) {
  RecordPlace place;
  size_t behind = 0;
  while (NextRecord(check.text, behind, place)) {
    CheckGap(check, behind, place.open, findings);
    const RecordCheck record = MeantRecord(check.text, place);
    CheckRecord(record, findings);
    CheckDuplicates(check.duplicates, record, findings);
    CheckComments(check.comments, record, findings);
    behind = place.end;
    ++findings.records;
  }
  CheckGap(check, behind, place.open, findings);
  if (place.open != kNowhere)
    Report(findings, kRecordNotClosed, place.open, "the record is not closed: the library drops it");
}

}  // namespace

Findings CheckText(string_view text) {
  Findings findings;
  if (text.size() > kMostBytes) return TooLarge(text.size());
  if (IsUtf16(text)) {
    Report(findings, kUtf16, 0, "the file is UTF-16, in which the library finds no record");
    return findings;
  }
  if (IsCipherText(text)) {
    Report(findings, kNotDeciphered, 0, "the file is no text, and can't be deciphered");
    return findings;
  }
  if (text.starts_with(kUtf8Mark))
    Report(findings, kByteOrderMark, 0, "the file begins with a byte-order mark");
  CheckDeclaration(text, findings);
  CheckBytes(text, findings);
  TextCheck check{text, {text}, {}};
  CheckRecords(check, findings);
  if (findings.records == 0 && text.find("<GameSignature>") == kNone)
    Report(findings, kNoRecord, 0, "the library finds no record in the file");
  return findings;
}

Findings TooLarge(size_t bytes) {
  Findings findings;
  Report(findings, kTooLarge, 0,
         "the file has " + std::to_string(bytes >> 20) + " MiB; at most " + std::to_string(kMostBytes >> 20) +
             " MiB are checked");
  return findings;
}

}  // namespace tarnwick::host
