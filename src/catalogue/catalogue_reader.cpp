// Reader: the catalogue's records. The pass reads a whole record at once: it gives what the plain operations
// on each element's text give, at the cost of one search instead of eighteen.
#include "catalogue/catalogue_reader.h"

#include "catalogue/element_name_reader.h"
#include "foundation/text.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr std::string_view kRecordOpen = "<GameSignature>";

struct KindName {
  std::string_view name;
  int32_t kind;
};
constexpr KindName kKindNames[] = {
    {"", kSourceNone},
    {"STEAM", kSourceSteam},
    {"EPIC", kSourceEpic},
    {"GOG", kSourceGog},
    {"GOGGALAXY", kSourceGog},
    {"UPLAY", kSourceUplay},
    {"ORIGIN", kSourceEa},
    {"EA", kSourceEa},
    {"UWP", kSourceUwp},
    {"BATTLENET", kSourceBattleNet},
    {"BATTLE.NET", kSourceBattleNet},
    {"RIOT", kSourceRiot},
    {"DIRECT", kSourceDirect},
    {"MIHOYO", kSourceMihoyo},
    {"ARC", kSourceArc},
    {"BETHESDA", kSourceBethesda},
};

// `raw` lies in a record, so the element's closing tag stands behind it: more than the eight readable bytes
// that AssignElementText asks for.
void SetField(GameSignature& record, size_t element, std::string_view raw) {
  if (element == kSourceElement) {
    record.SourceKind = ParseSourceKind(NormalizeElementText(raw));
  } else {
    AssignElementText(record.*kElements[element].field, raw);
  }
}

// By element: whose opening tag came next the last time. A catalogue written by a program keeps one order, so
// this predicts nearly every tag. The record's own element stands for the record's beginning.
using Followers = std::array<size_t, kElements.size()>;

// What is known of a record's elements at a point of the pass: bits by element.
struct RecordState {
  uint32_t seen = 0;                               // the opening tag was found: a later one does not count
  uint32_t open = 0;                               // and the closing tag is still to come
  std::array<const char*, kElements.size()> text;  // behind the opening tag of each open element
  size_t last = kRecordElement;                    // whose opening tag came last
};

// Calls `visit` for an element and for each whose name its name begins with: a search for any of these names
// stops at this element's tag.
template <class Visit>
void ForEachPrefix(size_t element, Visit visit) {
  for (; element != kNoElement; element = kShorterName[element]) visit(element);
}

// Notes the opening tag that begins at `tag`. False if no '>' follows, and so nothing that could end the
// record.
bool NoteOpening(RecordState& state, size_t element, const char* tag, const char* end) {
  uint32_t fresh = 0;
  ForEachPrefix(element, [&](size_t name) { fresh |= 1u << name; });
  fresh &= ~state.seen;
  if (fresh == 0) return true;
  state.seen |= fresh;
  const char* const nameEnd = tag + 1 + kElements[element].name.size();
  const auto* const close =
      static_cast<const char*>(std::memchr(nameEnd, '>', static_cast<size_t>(end - nameEnd)));
  if (close == nullptr) return false;
  const std::string_view inside(tag, static_cast<size_t>(close - tag));
  if (close != nameEnd && (inside.back() == '/' || inside.find(kNilAttribute) != kNone)) return true;
  state.open |= fresh;
  ForEachPrefix(element, [&](size_t name) {
    if ((fresh >> name & 1) != 0) state.text[name] = close + 1;
  });
  return true;
}

// Takes the closing tag at `tag` for the element's, if that is open. Kept: a closing tag that stands inside
// the opening tag does not count (docs/decisions/catalogue-text.md).
void NoteClosing(RecordState& state, size_t element, const char* tag, GameSignature& record) {
  if ((state.open >> element & 1) == 0 || tag < state.text[element]) return;
  state.open &= ~(1u << element);
  SetField(record, element, {state.text[element], static_cast<size_t>(tag - state.text[element])});
}

// Fills the record whose opening tag ends at `at`. Returns where its closing tag ends, or null if it has
// none.
const char* ReadRecord(const char* at, const char* end, GameSignature& record, Followers& followers) {
  RecordState state;
  while (true) {
    const auto* const tag = static_cast<const char*>(std::memchr(at, '<', static_cast<size_t>(end - at)));
    if (tag == nullptr || end - tag < 2) return nullptr;
    const bool closing = tag[1] == '/';
    at = tag + (closing ? 2 : 1);
    const size_t element = NameAt(at, end, closing ? state.last : followers[state.last]);
    if (element == kNoElement) continue;
    at += kElements[element].name.size();
    if (closing) {
      if (at == end || *at != '>') continue;
      if (element == kRecordElement) return at + 1;
      NoteClosing(state, element, tag, record);
    } else {
      followers[state.last] = element;
      state.last = element;
      if (element != kRecordElement && !NoteOpening(state, element, tag, end)) return nullptr;
    }
  }
}

}  // namespace

int32_t ParseSourceKind(const std::string& text) {
  const std::string upper = ToUpperBytes(text);
  const auto row = std::ranges::find(kKindNames, std::string_view(upper), &KindName::name);
  return row == std::end(kKindNames) ? static_cast<int32_t>(kSourceNone) : row->kind;
}

GameList ParseCatalogue(std::string_view text) {
  GameList games;
  Followers followers{};
  const char* const end = text.data() + text.size();
  for (size_t open = text.find(kRecordOpen); open != kNone; open = text.find(kRecordOpen, open)) {
    const char* const behind =
        ReadRecord(text.data() + open + kRecordOpen.size(), end, games.emplace_back(), followers);
    if (behind == nullptr) {
      games.pop_back();
      break;
    }
    open = static_cast<size_t>(behind - text.data());
  }
  return games;
}

}  // namespace tarnwick
