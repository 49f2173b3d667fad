// Reader: the encoding of a catalogue's bytes.
#include "host/catalogue/check_encoding.h"

#include "foundation/text.h"

#include <algorithm>
#include <array>
#include <string>

namespace tarnwick::host {
namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr std::string_view kBlanks = " \t\r\n";

unsigned char ByteAt(std::string_view text, size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// What the first byte of a character of several bytes asks for: how many follow, and the least and the most
// that the first of them may be.
struct LeadByte {
  unsigned char first, last;
  size_t trails;
  unsigned char least, most;
};
constexpr LeadByte kLeadBytes[] = {
    {0xC2, 0xDF, 1, 0x80, 0xBF}, {0xE0, 0xE0, 2, 0xA0, 0xBF}, {0xE1, 0xEC, 2, 0x80, 0xBF},
    {0xED, 0xED, 2, 0x80, 0x9F}, {0xEE, 0xEF, 2, 0x80, 0xBF}, {0xF0, 0xF0, 3, 0x90, 0xBF},
    {0xF1, 0xF3, 3, 0x80, 0xBF}, {0xF4, 0xF4, 3, 0x80, 0x8F},
};

// The length of the character of several bytes that begins here, or 0.
size_t LongCharacterAt(std::string_view text, size_t at) {
  const unsigned char lead = ByteAt(text, at);
  const auto* const row =
      std::ranges::find_if(kLeadBytes, [&](const LeadByte& r) { return r.first <= lead && lead <= r.last; });
  if (row == std::end(kLeadBytes)) return 0;
  const unsigned char second = ByteAt(text, at + 1);
  if (second < row->least || second > row->most) return 0;
  for (size_t i = 2; i <= row->trails; ++i) {
    if ((ByteAt(text, at + i) & 0xC0) != 0x80) return 0;
  }
  return row->trails + 1;
}

bool IsControl(char byte) {
  constexpr std::string_view kAllowed = "\t\n\v\f\r";
  return static_cast<unsigned char>(byte) < 0x20 && kAllowed.find(byte) == kNone;
}

}  // namespace

bool IsUtf16(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
  const std::string_view head = bytes.substr(0, 4096 + bytes.size() % 2);
  std::array<size_t, 2> zeros{};
  for (size_t at = 0; at < head.size(); ++at) zeros[at % 2] += head[at] == '\0' ? 1 : 0;
  const auto [fewer, more] = std::minmax(zeros[0], zeros[1]);
  const size_t units = head.size() / 2;
  return units > 0 && more * 4 >= units && fewer * 8 <= more;
}

std::string_view XmlDeclaration(std::string_view text) {
  const size_t mark = text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
  const size_t first = text.find_first_not_of(kBlanks, mark);
  if (first == kNone || !text.substr(first).starts_with("<?xml")) return {};
  if (kBlanks.find(static_cast<char>(ByteAt(text, first + 5))) == kNone) return {};
  const size_t end = text.find("?>", first);
  return end == kNone ? std::string_view() : text.substr(first, end + 2 - first);
}

std::string_view DeclaredEncoding(std::string_view text) {
  const std::string_view declaration = XmlDeclaration(text);
  const size_t word = declaration.find("encoding");
  if (word == kNone) return {};
  const size_t equals = declaration.find_first_not_of(kBlanks, word + 8);
  if (equals == kNone || declaration[equals] != '=') return {};
  const size_t quote = declaration.find_first_not_of(kBlanks, equals + 1);
  if (quote == kNone || (declaration[quote] != '"' && declaration[quote] != '\'')) return {};
  const size_t end = declaration.find(declaration[quote], quote + 1);
  return end == kNone ? std::string_view() : declaration.substr(quote + 1, end - quote - 1);
}

bool NamesUtf8(std::string_view encoding) {
  const std::string upper = ToUpperBytes(std::string(encoding));
  return upper == "UTF-8" || upper == "UTF8";
}

size_t FirstNoUtf8(std::string_view text, size_t from) {
  for (size_t at = from; at < text.size();) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      ++at;
      continue;
    }
    const size_t length = LongCharacterAt(text, at);
    if (length == 0) return at;
    at += length;
  }
  return kNone;
}

bool LooksBinary(std::string_view bytes) {
  return std::ranges::any_of(bytes, IsControl) || FirstNoUtf8(bytes) != kNone;
}

}  // namespace tarnwick::host
