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

// The C library's isspace, with its answer for ASCII at hand: only beyond that do locales differ.
bool IsSpace(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code < 0x80 ? code == ' ' || (code >= '\t' && code <= '\r') : std::isspace(code) != 0;
}

std::string Joined(std::initializer_list<std::string_view> pieces) {
  std::string out;
  for (const std::string_view piece : pieces) out += piece;
  return out;
}

// ---- White space.

constexpr size_t kWordSize = sizeof(uint64_t);
constexpr uint64_t Repeat(uint64_t byte) { return byte * 0x0101010101010101u; }
constexpr uint64_t kHighBits = Repeat(0x80);
static_assert(std::endian::native == std::endian::little, "a word's lowest byte is taken for the first");

// A text that is normalised into `out`, which has room for all of it.
struct Normalizing {
  char* out;
  size_t length = 0;
  bool gap = false;  // there was white space since the last byte written
};

void AddByte(Normalizing& normal, char byte) {
  if (IsSpace(byte)) {
    normal.gap = normal.length != 0;
    return;
  }
  if (normal.gap) normal.out[normal.length++] = ' ';
  normal.gap = false;
  normal.out[normal.length++] = byte;
}

// The high bit of each blank in an ASCII word.
uint64_t BlanksIn(uint64_t word) { return ~((word ^ Repeat(' ')) + Repeat(0x7F)) & kHighBits; }

// Is a word ASCII without control characters, and has each blank in it another byte in front? `blankBefore`
// is 0x80 if a blank, or nothing, stands before the word, and 0 otherwise.
bool IsNormalWord(uint64_t word, uint64_t blankBefore) {
  const uint64_t notPlain = (word | ((word - Repeat(' ')) & ~word)) & kHighBits;
  const uint64_t blanks = BlanksIn(word);
  return (notPlain | (blanks & (blanks << 8 | blankBefore))) == 0;
}

// Adds eight bytes at once if that can be done.
bool AddWord(Normalizing& normal, const char* bytes) {
  uint64_t word;
  std::memcpy(&word, bytes, kWordSize);
  if (!IsNormalWord(word, normal.gap || normal.length == 0 ? 0x80 : 0)) return false;
  if (normal.gap) normal.out[normal.length++] = ' ';
  std::memcpy(normal.out + normal.length, bytes, kWordSize);
  // A blank at the end waits for what follows.
  normal.gap = BlanksIn(word) >> 63 != 0;
  normal.length += kWordSize - (normal.gap ? 1 : 0);
  return true;
}

// True only if normalising and decoding would leave a text as it is, as they do with nearly all. At least
// eight bytes must be readable behind it.
bool IsFinal(std::string_view text) {
  uint64_t blankBefore = 0x80;
  for (size_t at = 0; at < text.size(); at += kWordSize) {
    uint64_t word;
    std::memcpy(&word, text.data() + at, kWordSize);
    if (const size_t left = text.size() - at; left < kWordSize) {
      const uint64_t inside = (uint64_t{1} << 8 * left) - 1;
      word = (word & inside) | (Repeat('x') & ~inside);
    }
    const uint64_t ampersands = word ^ Repeat('&');
    if (!IsNormalWord(word, blankBefore) || ((ampersands - Repeat(1)) & ~ampersands & kHighBits) != 0)
      return false;
    blankBefore = BlanksIn(word) >> 56;
  }
  return text.empty() || text.back() != ' ';
}

// ---- Character references.

struct NamedReference {
  std::string_view name;
  char byte;
};
constexpr NamedReference kNamedReferences[] = {
    {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

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

// A text that is decoded in its own place: no reference is shorter than what it stands for.
struct Decoding {
  std::string& text;
  size_t semicolon;  // the first at or behind the last position asked for
};

// Asked for ascending positions only, so that every byte is looked at once: a text of a million "&" and no
// ";" must not cost a million searches.
size_t SemicolonFrom(Decoding& decoding, size_t position) {
  if (decoding.semicolon != kNone && decoding.semicolon < position) {
    decoding.semicolon = decoding.text.find(';', position);
  }
  return decoding.semicolon;
}

std::string_view Between(const std::string& text, size_t from, size_t to) {
  return std::string_view(text).substr(from, to - from);
}

// Kept: surrogates and values beyond Unicode's range are written like any other, by the plain table of
// ranges.
char* WriteCodePoint(char* out, uint32_t code) {
  const auto write = [&](uint32_t bits) { *out++ = static_cast<char>(static_cast<unsigned char>(bits)); };
  const auto trail = [&](int shift) { write(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) {
    write(code);
  } else if (code < 0x800) {
    write(0xC0 | code >> 6), trail(0);
  } else if (code < 0x10000) {
    write(0xE0 | code >> 12), trail(6), trail(0);
  } else {
    write(0xF0 | code >> 18), trail(12), trail(6), trail(0);
  }
  return out;
}

// These write what the reference at `at` stands for, and return where the writing ends; null, with nothing
// written, if there is no reference. The reference ends at decoding.semicolon.
char* WriteNamed(char* out, Decoding& decoding, size_t at) {
  const size_t end = SemicolonFrom(decoding, at);
  if (end == kNone) return nullptr;
  const std::string_view name = Between(decoding.text, at + 1, end);
  const auto* const row = std::ranges::find(kNamedReferences, name, &NamedReference::name);
  if (row == std::end(kNamedReferences)) return nullptr;
  *out = row->byte;
  return out + 1;
}

char* WriteNumbered(char* out, Decoding& decoding, size_t at) {
  const std::string& text = decoding.text;
  const bool hexadecimal = at + 2 < text.size() && (text[at + 2] == 'x' || text[at + 2] == 'X');
  const size_t digits = at + (hexadecimal ? 3 : 2);
  const size_t end = SemicolonFrom(decoding, digits);
  if (end == kNone) return nullptr;
  const std::optional<uint32_t> code = ParseUnsigned(Between(text, digits, end), hexadecimal ? 16 : 10);
  return code ? WriteCodePoint(out, *code) : nullptr;
}

char* WriteReference(char* out, Decoding& decoding, size_t at) {
  if (decoding.text[at] != '&' || at + 1 == decoding.text.size()) return nullptr;
  return decoding.text[at + 1] == '#' ? WriteNumbered(out, decoding, at) : WriteNamed(out, decoding, at);
}

void DecodeInPlace(std::string& text) {
  const size_t first = text.find('&');
  if (first == kNone) return;
  Decoding decoding{text, text.find(';', first)};
  char* out = text.data() + first;
  for (size_t at = first; at < text.size(); ++at) {
    if (char* const behind = WriteReference(out, decoding, at)) {
      out = behind;
      at = decoding.semicolon;
    } else {
      *out++ = text[at];
    }
  }
  text.resize(static_cast<size_t>(out - text.data()));
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

// `raw` lies in a record, so its closing tag stands behind it.
void SetField(GameSignature& record, size_t element, std::string_view raw) {
  if (element == kSourceElement) {
    record.SourceKind = ParseSourceKind(NormalizeElementText(raw));
  } else if (std::string& field = record.*kElements[element].field; IsFinal(raw)) {
    field.assign(raw);
  } else {
    field = NormalizeElementText(raw);
    DecodeInPlace(field);
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
  std::string out(text.size(), '\0');
  Normalizing normal{out.data()};
  for (size_t at = 0; at < text.size(); at += kWordSize) {
    const std::string_view word = text.substr(at, kWordSize);
    if (word.size() == kWordSize && AddWord(normal, word.data())) continue;
    for (const char byte : word) AddByte(normal, byte);
  }
  out.resize(normal.length);
  return out;
}

std::string DecodeEntities(std::string_view text) {
  std::string out(text);
  DecodeInPlace(out);
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
