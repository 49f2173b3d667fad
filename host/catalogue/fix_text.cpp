// Reader: mending a catalogue's text. A record is touched only if it is a flat list of elements, each closed
// by its own tag; others are left as they are, for whoever knows what they mean to say.
#include "host/catalogue/fix_text.h"

#include "catalogue/catalogue_reader.h"
#include "catalogue/element_text_reader.h"
#include "host/catalogue/check_encoding.h"
#include "host/catalogue/check_findings.h"
#include "host/catalogue/check_layout.h"
#include "host/catalogue/check_rules.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <utility>

namespace tarnwick::host {
namespace {

using std::string;
using std::string_view;

constexpr size_t kNone = string_view::npos;
constexpr size_t kMostElements = 200;
constexpr string_view kBlanks = " \t\r\n\v\f";
constexpr size_t kOpenLength = string_view("<GameSignature>").size();

// ---- A record as a list of elements.

struct Child {
  string_view name;
  Span whole;  // from its opening tag to behind its closing one
  Span text;   // nowhere for one without a closing tag
};

struct FlatRecord {
  std::vector<Child> children;
  bool plain = true;  // no comments between them
};

size_t BehindComment(string_view text, size_t at) {
  const size_t end = text.find("-->", at + 4);
  if (end == kNone || text.substr(at + 1, end - at - 1).find('<') != kNone) return kNone;
  return end + 3;
}

// The element that opens at `at`, if it is closed by its own tag and holds text alone.
std::optional<Child> ChildAt(string_view text, size_t at) {
  const size_t nameEnd = text.find_first_of(" \t\r\n\v\f/=<>", at + 1);
  const size_t tagEnd = text.find('>', at);
  if (nameEnd == kNone || tagEnd == kNone || nameEnd == at + 1 || nameEnd > tagEnd) return std::nullopt;
  const string_view name = text.substr(at + 1, nameEnd - at - 1);
  const string_view tag = text.substr(at, tagEnd - at);
  if (std::ranges::count(tag, '"') % 2 != 0 || std::ranges::count(tag, '\'') % 2 != 0) return std::nullopt;
  if (tag.substr(1).find('<') != kNone) return std::nullopt;
  if (tag.back() == '/') return Child{name, {at, tagEnd + 1}, {}};
  const size_t close = text.find('<', tagEnd);
  const string closing = "</" + string(name) + ">";
  if (close == kNone || !text.substr(close).starts_with(closing)) return std::nullopt;
  return Child{name, {at, close + closing.size()}, {tagEnd + 1, close}};
}

// Nothing where the record is no flat list. `text` ends where the record does.
std::optional<FlatRecord> ReadFlat(string_view text, size_t open) {
  FlatRecord record;
  size_t at = open + kOpenLength;
  while (true) {
    const size_t next = text.find('<', at);
    if (next == kNone || text.substr(at, next - at).find_first_not_of(kBlanks) != kNone) return std::nullopt;
    if (text.substr(next) == "</GameSignature>") return record;
    if (text.substr(next).starts_with("<!--")) {
      at = BehindComment(text, next);
      if (at == kNone) return std::nullopt;
      record.plain = false;
      continue;
    }
    const std::optional<Child> child = ChildAt(text, next);
    if (!child || record.children.size() == kMostElements) return std::nullopt;
    record.children.push_back(*child);
    at = child->whole.end;
  }
}

// ---- Order.

// How many of the catalogue's names this one goes on from: those stand ahead of it.
size_t NamesBeneath(string_view name) {
  return static_cast<size_t>(std::ranges::count_if(kElements, [&](const CatalogueElement& row) {
    return name != row.name && name.starts_with(row.name);
  }));
}

// The name at the bottom, such as DefaultFolder of DefaultFolderExe32.
string_view FamilyOf(string_view name) {
  string_view family = name;
  for (const CatalogueElement& row : kElements) {
    if (name.starts_with(row.name) && row.name.size() < family.size()) family = row.name;
  }
  return family;
}

bool IsSwallowing(string_view text, const RecordPlace& place) {
  for (size_t element = 0; element < kRecordElement; ++element) {
    const ElementPlace& found = place.elements[element];
    if (found.own == kNowhere || found.own == found.tag) continue;
    const string own = FieldText(element, TextOf(text, OwnText(text, place, element)));
    if (own != FieldText(element, TextOf(text, found.text))) return true;
  }
  return false;
}

// Sorts each family within the places that it has; the others stay where they are.
std::vector<Child> InOrder(const std::vector<Child>& children) {
  std::vector<Child> ordered = children;
  std::vector<bool> done(children.size(), false);
  for (size_t first = 0; first < children.size(); ++first) {
    if (done[first]) continue;
    std::vector<size_t> slots;
    for (size_t i = first; i < children.size(); ++i) {
      if (FamilyOf(children[i].name) == FamilyOf(children[first].name)) slots.push_back(i);
    }
    std::vector<Child> family;
    for (const size_t slot : slots) family.push_back(children[slot]);
    std::ranges::sort(family, {}, [](const Child& child) {
      return std::pair(NamesBeneath(child.name), child.whole.begin);
    });
    for (size_t i = 0; i < slots.size(); ++i) {
      ordered[slots[i]] = family[i];
      done[slots[i]] = true;
    }
  }
  return ordered;
}

// ---- The fixing of one record.

struct Fixing {
  string_view text;
  FixedText fixed;
  std::unordered_set<string> seen;  // each record's fields
};

bool IsElement(string_view name) {
  return std::ranges::find(kElements, name, &CatalogueElement::name) != kElements.end();
}

string Trimmed(Fixing& fixing, const Child& child, const string& record) {
  const string_view whole = TextOf(fixing.text, child.whole);
  if (!child.text.Exists() || !IsElement(child.name)) return string(whole);
  const string_view raw = TextOf(fixing.text, child.text);
  const string normal = NormalizeElementText(raw);
  if (normal == raw) return string(whole);
  AddStep(fixing.fixed, {child.text.begin, kWhiteSpace,
                         record + string(child.name) + " is written as it is read, " + Quoted(normal)});
  const size_t head = child.text.begin - child.whole.begin;
  return string(whole.substr(0, head)) + normal + string(whole.substr(head + raw.size()));
}

// The record with its elements in order and their texts trimmed.
string Rewritten(Fixing& fixing, const RecordPlace& place, const FlatRecord& flat, const string& name) {
  const bool swallowing = IsSwallowing(fixing.text, place);
  const std::vector<Child> ordered = swallowing ? InOrder(flat.children) : flat.children;
  if (swallowing)
    AddStep(fixing.fixed,
            {place.open, kSwallowedElement, name + "shorter names are put ahead of longer ones"});
  string record;
  size_t at = place.open;
  for (size_t i = 0; i < ordered.size(); ++i) {
    record += fixing.text.substr(at, flat.children[i].whole.begin - at);
    record += Trimmed(fixing, ordered[i], name);
    at = flat.children[i].whole.end;
  }
  return record.append(fixing.text.substr(at, place.end - at));
}

// All fields of a record as one text, each with its length.
string FieldsOf(const GameSignature& game) {
  string fields = std::to_string(game.SourceKind);
  for (size_t element = 0; element < kSourceElement; ++element) {
    const string& field = game.*kElements[element].field;
    fields.append(" ").append(std::to_string(field.size())).append(" ").append(field);
  }
  return fields;
}

bool HoldsElementsAlone(const FlatRecord& flat) {
  return flat.plain &&
         std::ranges::all_of(flat.children, [](const Child& child) { return IsElement(child.name); });
}

// Takes the white space at the end of what is written away, back to the line's beginning.
void DropLine(string& text) {
  const size_t last = text.find_last_not_of(" \t");
  text.resize(last == kNone ? 0 : last + 1);
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
}

void FixRecord(Fixing& fixing, const RecordPlace& place) {
  const string_view block = fixing.text.substr(0, place.end);
  const std::optional<FlatRecord> flat = ReadFlat(block, place.open);
  const RecordCheck meant = MeantRecord(fixing.text, place);
  const string name = meant.name.empty() ? string() : meant.name + ": ";
  if (!flat) {
    fixing.seen.insert(FieldsOf(ReadPlacedRecord(fixing.text, place)));
    fixing.fixed.text += fixing.text.substr(place.open, place.end - place.open);
    return;
  }
  const bool fresh = fixing.seen.insert(FieldsOf(meant.meant)).second;
  if (!fresh && HoldsElementsAlone(*flat)) {
    DropLine(fixing.fixed.text);
    AddStep(fixing.fixed, {place.open, kSameName, name + "the record equals an earlier one and is left out"});
    return;
  }
  fixing.fixed.text += Rewritten(fixing, place, *flat, name);
}

}  // namespace

void AddStep(FixedText& fixed, FixStep step) {
  ++fixed.counts[static_cast<size_t>(step.check)];
  if (fixed.steps.size() < kMostFindings) fixed.steps.push_back(std::move(step));
}

FixedText FixText(string_view text) {
  Fixing fixing{text, {}, {}};
  fixing.fixed.text.reserve(text.size());
  RecordPlace place;
  size_t behind = 0;
  while (NextRecord(text, behind, place)) {
    fixing.fixed.text += text.substr(behind, place.open - behind);
    FixRecord(fixing, place);
    behind = place.end;
  }
  fixing.fixed.text += text.substr(behind);
  return std::move(fixing.fixed);
}

FixedText FixDeclaration(string_view text) {
  FixedText fixed;
  if (text.starts_with(kUtf8Mark)) {
    AddStep(fixed, {0, kByteOrderMark, "the byte-order mark is taken away"});
    text.remove_prefix(kUtf8Mark.size());
  }
  const string_view encoding = DeclaredEncoding(text);
  fixed.text = text;
  if (encoding.empty() || NamesUtf8(encoding)) return fixed;
  const auto at = static_cast<size_t>(encoding.data() - text.data());
  fixed.text.replace(at, encoding.size(), "utf-8");
  AddStep(fixed, {at, kOtherEncoding, "utf-8 is declared in place of " + Quoted(encoding)});
  return fixed;
}

}  // namespace tarnwick::host
