// Reader: the text of one element of the catalogue.
#include "catalogue/element_text_reader.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <optional>

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;

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

// Adds eight bytes at once if that can be done, and there are eight.
bool AddWord(Normalizing& normal, std::string_view bytes) {
  if (bytes.size() != kWordSize) return false;
  uint64_t word;
  std::memcpy(&word, bytes.data(), kWordSize);
  if (!IsNormalWord(word, normal.gap || normal.length == 0 ? 0x80 : 0)) return false;
  if (normal.gap) normal.out[normal.length++] = ' ';
  std::memcpy(normal.out + normal.length, bytes.data(), kWordSize);
  // A blank at the word's end is written once another byte follows.
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

// Kept: surrogates and values beyond Unicode's range are written like any other, by the plain table of ranges
// (docs/decisions/catalogue-text.md).
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

}  // namespace

std::string ExtractElementText(std::string_view block, std::string_view name) {
  // Kept: no test of what follows the name. The catalogue is written with that in mind
  // (docs/decisions/catalogue-text.md).
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
    if (AddWord(normal, word)) continue;
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

void AssignElementText(std::string& field, std::string_view raw) {
  if (IsFinal(raw)) {
    field.assign(raw);
  } else {
    field = NormalizeElementText(raw);
    DecodeInPlace(field);
  }
}

}  // namespace tarnwick
