// Reader: the places of a catalogue's records and elements. One pass over a record finds all of its elements,
// so that the cost stays linear in the record's size whatever it holds.
#include "host/catalogue/check_layout.h"

#include "catalogue/catalogue_reader.h"
#include "catalogue/element_text_reader.h"

#include <algorithm>
#include <string>

namespace tarnwick::host {
namespace {

constexpr std::string_view kOpenRecord = "<GameSignature>";
constexpr std::string_view kCloseRecord = "</GameSignature>";
constexpr std::string_view kRecordName = "GameSignature";

bool IsBlank(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

bool BeginsName(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_' || byte == ':' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

bool EndsName(char byte) { return IsBlank(byte) || byte == '>' || byte == '/' || byte == '<' || byte == '='; }

std::string_view NameFrom(std::string_view text, size_t at) {
  size_t end = at;
  while (end < text.size() && !EndsName(text[end])) ++end;
  return text.substr(at, end - at);
}

size_t ElementNamed(std::string_view name) {
  const auto row = std::ranges::find(kElements, name, &CatalogueElement::name);
  return static_cast<size_t>(row - kElements.begin());
}

// The pass over one record, or over what stands between two.
struct Pass {
  std::string_view text;
  size_t end;
  RecordPlace& record;
  size_t nextClose = 0;                           // the first '>' at or behind the last place asked for
  std::array<size_t, kRecordElement> textFrom{};  // of elements that wait for their closing tag
};

// Asked for ascending places only: a text of a million '<' and one '>' must not cost a million searches.
size_t TagEnd(Pass& pass, size_t at) {
  if (pass.nextClose < at) pass.nextClose = std::min(pass.text.find('>', at), pass.end);
  return pass.nextClose;
}

void AddOddTag(Pass& pass, size_t at, Oddity oddity, std::string_view name) {
  if (pass.record.oddTags.size() < kMostOddTags) pass.record.oddTags.push_back({at, oddity, name});
}

bool IsLocalRecordName(std::string_view name) {
  return name.substr(name.rfind(':') + 1) == kRecordName;  // npos + 1 is 0
}

void NoteOwnTag(Pass& pass, size_t at, std::string_view name) {
  if (IsLocalRecordName(name)) {
    const bool opens = pass.text.substr(at).starts_with(kOpenRecord);
    AddOddTag(pass, at, opens ? Oddity::kRecordInside : Oddity::kRecordSkipped, name);
    return;
  }
  const size_t element = ElementNamed(name);
  if (element == kElements.size()) {
    AddOddTag(pass, at, Oddity::kUnknown, name);
  } else if (pass.record.elements[element].own == kNowhere) {
    pass.record.elements[element].own = at;
  } else {
    AddOddTag(pass, at, Oddity::kRepeated, name);
  }
}

// The library's search for a name stops at the first tag that begins with it.
void NoteSearchedTag(Pass& pass, size_t at) {
  const char* const data = pass.text.data();
  for (size_t element = NameAt(data + at + 1, data + pass.end, 0); element != kNoElement;
       element = kShorterName[element]) {
    if (element == kRecordElement || pass.record.elements[element].tag != kNowhere) continue;
    pass.record.elements[element].tag = at;
    const size_t end = TagEnd(pass, at);
    const std::string_view tag = pass.text.substr(at, end - at);
    if (end == pass.end || tag.back() == '/' || tag.find(kNilAttribute) != kNowhere) continue;
    pass.textFrom[element] = end + 1;
  }
}

void NoteClosingTag(Pass& pass, size_t at) {
  const std::string_view name = NameFrom(pass.text, at + 2);
  const size_t element = ElementNamed(name);
  if (element >= kRecordElement) return;
  const size_t behind = at + 2 + name.size();
  if (behind >= pass.end || pass.text[behind] != '>') {
    AddOddTag(pass, at, Oddity::kBlankInClosing, name);
    return;
  }
  ElementPlace& place = pass.record.elements[element];
  if (pass.textFrom[element] == 0 || at < pass.textFrom[element] || place.text.Exists()) return;
  place.text = {pass.textFrom[element], at};
}

void NoteTag(Pass& pass, size_t at) {
  if (at + 1 >= pass.end) return;
  if (pass.text[at + 1] == '/') {
    NoteClosingTag(pass, at);
  } else if (BeginsName(pass.text[at + 1])) {
    NoteSearchedTag(pass, at);
    NoteOwnTag(pass, at, NameFrom(pass.text, at + 1));
  }
}

}  // namespace

bool NextRecord(std::string_view text, size_t from, RecordPlace& record) {
  record.elements.fill({});
  record.oddTags.clear();
  record.open = text.find(kOpenRecord, from);
  if (record.open == kNowhere) return false;
  const size_t inside = record.open + kOpenRecord.size();
  const size_t close = text.find(kCloseRecord, inside);
  if (close == kNowhere) return false;
  record.end = close + kCloseRecord.size();
  Pass pass{text, close, record};
  for (size_t at = text.find('<', inside); at < close; at = text.find('<', at + 1)) NoteTag(pass, at);
  return true;
}

std::vector<OddTag> SkippedRecords(std::string_view text, size_t from, size_t to) {
  std::vector<OddTag> skipped;
  to = std::min(to, text.size());
  for (size_t at = text.find('<', from); at < to; at = text.find('<', at + 1)) {
    const std::string_view name = NameFrom(text.substr(0, to), at + 1);
    if (!IsLocalRecordName(name) || skipped.size() == kMostOddTags) continue;
    skipped.push_back({at, Oddity::kRecordSkipped, name});
  }
  return skipped;
}

GameSignature ReadPlacedRecord(std::string_view text, const RecordPlace& record) {
  GameSignature game;
  for (size_t element = 0; element < kRecordElement; ++element) {
    const std::string field = FieldText(element, TextOf(text, record.elements[element].text));
    if (element == kSourceElement) {
      game.SourceKind = ParseSourceKind(field);
    } else {
      game.*kElements[element].field = field;
    }
  }
  return game;
}

Span OwnText(std::string_view text, const RecordPlace& record, size_t element) {
  const ElementPlace& place = record.elements[element];
  if (place.own == kNowhere || place.own == place.tag) return place.text;
  const std::string_view block = text.substr(0, record.end);
  const size_t end = block.find('>', place.own);
  const std::string_view tag = block.substr(place.own, end - place.own);
  if (tag.back() == '/' || tag.find(kNilAttribute) != kNowhere) return {};
  const size_t close = block.find("</" + std::string(kElements[element].name) + ">", end);
  return close == kNowhere ? Span{} : Span{end + 1, close};
}

std::string FieldText(size_t element, std::string_view raw) {
  const std::string normal = NormalizeElementText(raw);
  return element == kSourceElement ? normal : DecodeEntities(normal);
}

}  // namespace tarnwick::host
