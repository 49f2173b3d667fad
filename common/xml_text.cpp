// Reader: characters of UTF-8 and of XML.
#include "common/xml_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tarnwick::common {
namespace {

struct Reference {
  char byte;
  std::string_view text;
};
constexpr std::array<Reference, 5> kReferences = {
    {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}}};

struct Decoded {
  uint32_t code = 0;
  size_t length = 0;  // 0: no UTF-8
};

// The lead bytes by how many bytes follow, and the least code that takes so many.
struct LeadByte {
  unsigned char mask;
  unsigned char value;
  size_t length;
  uint32_t least;
};
constexpr std::array<LeadByte, 4> kLeadBytes = {
    {{0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}}};

Decoded Decode(std::string_view text, size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  const auto* const lead =
      std::ranges::find_if(kLeadBytes, [&](const LeadByte& row) { return (first & row.mask) == row.value; });
  if (lead == kLeadBytes.end() || text.size() - at < lead->length) return {};
  uint32_t code = first & static_cast<unsigned char>(~lead->mask);
  for (size_t i = 1; i < lead->length; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    if ((byte & 0xC0) != 0x80) return {};
    code = code << 6 | (byte & 0x3Fu);
  }
  return code < lead->least || code > 0x10FFFF ? Decoded{} : Decoded{code, lead->length};
}

bool IsXml(uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return !(code >= 0xD800 && code <= 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
}

std::string Hex(uint32_t value, size_t digits) {
  std::string text;
  for (size_t i = digits; i-- > 0;) text += "0123456789ABCDEF"[value >> 4 * i & 0xF];
  return text;
}

}  // namespace

std::string XmlEscaped(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char byte : text) {
    const auto* const row = std::ranges::find(kReferences, byte, &Reference::byte);
    if (row == kReferences.end()) {
      escaped += byte;
    } else {
      escaped += row->text;
    }
  }
  return escaped;
}

size_t XmlCharacterLength(std::string_view text, size_t at) {
  const auto first = static_cast<unsigned char>(text[at]);
  if (first < 0x80) return IsXml(first) ? 1 : 0;
  const Decoded character = Decode(text, at);
  return IsXml(character.code) ? character.length : 0;
}

size_t FindNoXml(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    const size_t length = XmlCharacterLength(text, at);
    if (length == 0) return at;
    at += length;
  }
  return std::string_view::npos;
}

std::string DescribeNoXml(std::string_view text, size_t at) {
  const Decoded character = Decode(text, at);
  if (character.length == 0) return "byte 0x" + Hex(static_cast<unsigned char>(text[at]), 2);
  return "U+" + Hex(character.code, 4);
}

}  // namespace tarnwick::common
