// Reader: the catalogue's text. Here are the plain operations on one element, and the pass that reads a whole
// record at once: it gives what the plain operations give, at the cost of one search instead of eighteen.
#include "catalogue/catalogue_reader.h"

#include "foundation/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <optional>

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr std::string_view kRecordOpen = "<GameSignature>";
constexpr std::string_view kNilAttribute = "i:nil=\"true\"";

bool IsSpace(char byte) { return std::isspace(static_cast<unsigned char>(byte)) != 0; }

std::string Joined(std::initializer_list<std::string_view> pieces) {
  std::string out;
  for (const std::string_view piece : pieces) out += piece;
  return out;
}

// ---- Character references.

struct NamedReference {
  std::string_view name;
  char byte;
};
constexpr NamedReference kNamedReferences[] = {
    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

// Where the next ';' stands. Asked for ascending positions, it looks at every byte once: a text of a million
// "&" and no ";" must not cost a million searches.
class SemicolonSearch {
 public:
  explicit SemicolonSearch(std::string_view text) : text_(text), found_(text.find(';')) {}
  size_t AtOrAfter(size_t position) {
    if (found_ != kNone && found_ < position) found_ = text_.find(';', position);
    return found_;
  }

 private:
  std::string_view text_;
  size_t found_;
};

int DigitValue(char byte) {
  if (byte >= '0' && byte <= '9') return byte - '0';
  if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
  if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
  return 16;
}

// The C library's strtoul for Windows' 32-bit unsigned long, on any platform: leading blanks, a sign (a minus
// negates the unsigned value) and, in base 16, a "0x" are accepted; what follows the digits is ignored.
std::optional<uint32_t> ParseUnsigned(std::string_view text, int base) {
  size_t at = 0;
  while (at < text.size() && IsSpace(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  if (base == 16 && text.size() - at > 2 && text[at] == '0' && (text[at + 1] | 0x20) == 'x' &&
      DigitValue(text[at + 2]) < 16) {
    at += 2;
  }
  const size_t digits = at;
  uint64_t value = 0;
  for (; at < text.size() && DigitValue(text[at]) < base; ++at) {
    value = value * static_cast<uint64_t>(base) + static_cast<uint64_t>(DigitValue(text[at]));
    if (value > std::numeric_limits<uint32_t>::max()) return std::nullopt;
  }
  if (at == digits) return std::nullopt;
  return negative ? 0u - static_cast<uint32_t>(value) : static_cast<uint32_t>(value);
}

// Kept: surrogates and values beyond Unicode's range are written like any other, by the plain table of
// ranges.
void AppendCodePoint(std::string& out, uint32_t code) {
  const auto byte = [&](uint32_t bits) { out += static_cast<char>(static_cast<unsigned char>(bits)); };
  const auto trail = [&](int shift) { byte(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0 | code >> 6), trail(0);
  } else if (code < 0x10000) {
    byte(0xE0 | code >> 12), trail(6), trail(0);
  } else {
    byte(0xF0 | code >> 18), trail(12), trail(6), trail(0);
  }
}

// Both write what the reference at `at` stands for and return the position of its ';', or kNone if it is no
// reference.
size_t AppendNamed(std::string& out, std::string_view text, size_t at, SemicolonSearch& semicolons) {
  const size_t end = semicolons.AtOrAfter(at);
  if (end == kNone) return kNone;
  const std::string_view name = text.substr(at + 1, end - at - 1);
  for (const NamedReference& reference : kNamedReferences) {
    if (name != reference.name) continue;
    out += reference.byte;
    return end;
  }
  return kNone;
}

size_t AppendNumbered(std::string& out, std::string_view text, size_t at, SemicolonSearch& semicolons) {
  size_t digits = at + 2;
  const bool hexadecimal = digits < text.size() && (text[digits] == 'x' || text[digits] == 'X');
  if (hexadecimal) ++digits;
  const size_t end = semicolons.AtOrAfter(digits);
  if (end == kNone || end == digits) return kNone;
  const std::optional<uint32_t> code =
      ParseUnsigned(text.substr(digits, end - digits), hexadecimal ? 16 : 10);
  if (!code) return kNone;
  AppendCodePoint(out, *code);
  return end;
}

// ---- The kinds of source.

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

// ---- The names of the elements, laid out so that one look at a tag tells its name.

struct Element {
  std::string_view name;
  std::string GameSignature::* field = nullptr;
};
constexpr std::array kElements = {
    Element{"DisplayName", &GameSignature::DisplayName},
    Element{"RegistryKey", &GameSignature::RegistryKey},
    Element{"RegistryPathKeyName", &GameSignature::RegistryPathKeyName},
    Element{"DefaultExe", &GameSignature::DefaultExe},
    Element{"DefaultExe32", &GameSignature::DefaultExe32},
    Element{"DefaultExe64", &GameSignature::DefaultExe64},
    Element{"DefaultFolderExe", &GameSignature::DefaultFolderExe},
    Element{"DefaultFolderExe32", &GameSignature::DefaultFolderExe32},
    Element{"DefaultFolderExe64", &GameSignature::DefaultFolderExe64},
    Element{"DefaultFolder", &GameSignature::DefaultFolder},
    Element{"DefaultFolder32", &GameSignature::DefaultFolder32},
    Element{"DefaultFolder64", &GameSignature::DefaultFolder64},
    Element{"GameGUID", &GameSignature::GameGUID},
    Element{"GameInfo", &GameSignature::GameInfo},
    Element{"SourceExId", &GameSignature::SourceExId},
    Element{"LaunchUrl", &GameSignature::LaunchUrl},
    Element{"RunningExe", &GameSignature::RunningExe},
    Element{"SourceEx"},
    Element{"GameSignature"},  // its closing tag ends the record
};
constexpr size_t kElementCount = kElements.size();
constexpr size_t kNoElement = kElementCount;
constexpr size_t kSourceElement = kElementCount - 2;
constexpr size_t kRecordElement = kElementCount - 1;

constexpr size_t kWordSize = sizeof(uint64_t);
constexpr size_t kNameRoom = 3 * kWordSize;  // the longest name has 19 bytes
using NameWords = std::array<uint64_t, 3>;

// A name as words to compare under a mask. Names that share their eighth byte (all have one) form a chain,
// longest first, so that the first that matches is the longest that stands there.
struct NameEntry {
  NameWords bytes{};
  NameWords mask{};
  size_t nextInChain = kNoElement;
  size_t shorter = kNoElement;  // the longest other name that this one begins with
};

struct NameTable {
  std::array<NameEntry, kElements.size()> entries{};
  std::array<uint8_t, 256> chain{};
};

constexpr NameEntry MakeEntry(std::string_view name) {
  std::array<char, kNameRoom> bytes{};
  std::array<unsigned char, kNameRoom> mask{};
  for (size_t i = 0; i < name.size(); ++i) {
    bytes[i] = name[i];
    mask[i] = 0xFF;
  }
  return {.bytes = std::bit_cast<NameWords>(bytes), .mask = std::bit_cast<NameWords>(mask)};
}

constexpr size_t LongestOtherPrefix(size_t element) {
  size_t longest = kNoElement;
  for (size_t other = 0; other < kElementCount; ++other) {
    if (other == element || !kElements[element].name.starts_with(kElements[other].name)) continue;
    if (longest == kNoElement || kElements[other].name.size() > kElements[longest].name.size())
      longest = other;
  }
  return longest;
}

constexpr NameTable MakeNameTable() {
  NameTable table;
  table.chain.fill(kNoElement);
  for (size_t length = kWordSize; length <= kNameRoom; ++length) {
    for (size_t element = 0; element < kElementCount; ++element) {
      const std::string_view name = kElements[element].name;
      if (name.size() != length) continue;
      uint8_t& first = table.chain[static_cast<unsigned char>(name[kWordSize - 1])];
      table.entries[element] = MakeEntry(name);
      table.entries[element].shorter = LongestOtherPrefix(element);
      table.entries[element].nextInChain = first;
      first = static_cast<uint8_t>(element);
    }
  }
  return table;
}
constexpr NameTable kNames = MakeNameTable();

bool Matches(const NameEntry& name, const NameWords& text) {
  uint64_t difference = 0;
  for (size_t i = 0; i < text.size(); ++i) difference |= (text[i] ^ name.bytes[i]) & name.mask[i];
  return difference == 0;
}

// Can a longer name go on with this byte where a shorter one ends?
constexpr bool ExtendsName(char byte) { return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z'); }

constexpr bool ExtensionsAreKnown() {
  for (const Element& longer : kElements) {
    for (const Element& shorter : kElements) {
      if (longer.name.size() <= shorter.name.size() || !longer.name.starts_with(shorter.name)) continue;
      if (!ExtendsName(longer.name[shorter.name.size()])) return false;
    }
  }
  return true;
}
static_assert(ExtensionsAreKnown());

// The longest name that the text from `at` begins with, or kNoElement. Every other name it begins with is a
// beginning of that. `guess` is tried first: it saves time where it is right, and changes nothing where it is
// wrong.
size_t NameAt(const char* at, const char* end, size_t guess) {
  const auto left = static_cast<size_t>(end - at);
  if (left < kWordSize) return kNoElement;
  NameWords text{};
  if (left > kNameRoom) {
    std::memcpy(text.data(), at, kNameRoom);
    if (Matches(kNames.entries[guess], text) && !ExtendsName(at[kElements[guess].name.size()])) return guess;
  } else {
    std::memcpy(text.data(), at, left);
  }
  size_t element = kNames.chain[static_cast<unsigned char>(at[kWordSize - 1])];
  while (element != kNoElement && !Matches(kNames.entries[element], text))
    element = kNames.entries[element].nextInChain;
  return element;
}

// ---- Field texts.

static_assert(std::endian::native == std::endian::little, "IsClean takes a word's lowest byte for the first");
constexpr uint64_t Repeat(uint64_t byte) { return byte * 0x0101010101010101u; }

// Does the text consist of ASCII without "&" and control characters, with single blanks at most between other
// characters? It is then its own normal form. At least eight bytes must be readable behind it.
bool IsClean(std::string_view text) {
  uint64_t blankBefore =
      0x80;  // the end of an imagined blank in front, so that a leading one counts as a second
  for (size_t at = 0; at < text.size(); at += kWordSize) {
    uint64_t word;
    std::memcpy(&word, text.data() + at, kWordSize);
    if (const size_t left = text.size() - at; left < kWordSize) {
      const uint64_t inside = (uint64_t{1} << 8 * left) - 1;
      word = (word & inside) | (Repeat('x') & ~inside);
    }
    const uint64_t ampersands = word ^ Repeat('&');
    const uint64_t bad = word | ((word - Repeat(0x20)) & ~word) | ((ampersands - Repeat(1)) & ~ampersands);
    const uint64_t blanks = ~((word ^ Repeat(' ')) + Repeat(0x7F)) & Repeat(0x80);
    if (((bad & Repeat(0x80)) | (blanks & (blanks << 8 | blankBefore))) != 0) return false;
    blankBefore = blanks >> 56;
  }
  return text.empty() || text.back() != ' ';
}

// `raw` lies in a record, so its closing tag stands behind it.
void SetField(GameSignature& record, size_t element, std::string_view raw) {
  if (element == kSourceElement) {
    record.SourceKind = ParseSourceKind(NormalizeElementText(raw));
  } else if (std::string& field = record.*kElements[element].field; IsClean(raw)) {
    field.assign(raw);
  } else {
    field = DecodeEntities(NormalizeElementText(raw));
  }
}

// ---- Records.

// Which element's opening tag followed each one's the last time. A catalogue written by a machine keeps one
// order, so this tells nearly every next tag; the record's own tag stands for the beginning of a record.
using Followers = std::array<size_t, kElements.size()>;

// What is known of a record's elements at a point of the pass: bits by element.
struct RecordState {
  uint32_t seen = 0;                               // the opening tag was found: a later one does not count
  uint32_t open = 0;                               // and the closing tag is still to come
  std::array<const char*, kElements.size()> text;  // behind the opening tag of each open element
  size_t last = kRecordElement;                    // whose opening tag came last
};

// Calls `visit` for an element and for each whose name its name begins with: the search for any of them stops
// at a tag of the longest.
template <class Visit>
void ForEachPrefix(size_t element, Visit visit) {
  for (; element != kNoElement; element = kNames.entries[element].shorter) visit(element);
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
// the opening tag does not count.
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

std::string ExtractElementText(std::string_view block, std::string_view name) {
  // Kept: no test of what follows the name. The catalogue is written with that in mind.
  const size_t open = block.find(Joined({"<", name}));
  if (open == kNone) return {};
  const size_t tagEnd = block.find('>', open);
  if (tagEnd == kNone) return {};
  const std::string_view tag = block.substr(open, tagEnd - open + 1);
  if (tag.find(kNilAttribute) != kNone || tag.find("/>") != kNone) return {};
  const size_t close = block.find(Joined({"</", name, ">"}), tagEnd);
  if (close == kNone) return {};
  return std::string(block.substr(tagEnd + 1, close - tagEnd - 1));
}

std::string NormalizeElementText(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  bool gap = false;
  for (const char byte : text) {
    if (IsSpace(byte)) {
      gap = !out.empty();
      continue;
    }
    if (gap) out += ' ';
    gap = false;
    out += byte;
  }
  return out;
}

std::string DecodeEntities(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  SemicolonSearch semicolons(text);
  for (size_t at = 0; at < text.size(); ++at) {
    size_t end = kNone;
    if (text[at] == '&' && at + 1 < text.size()) {
      end = text[at + 1] == '#' ? AppendNumbered(out, text, at, semicolons)
                                : AppendNamed(out, text, at, semicolons);
    }
    if (end == kNone) {
      out += text[at];
    } else {
      at = end;
    }
  }
  return out;
}

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
