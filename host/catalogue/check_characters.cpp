// Reader: characters and references.
#include "host/catalogue/check_characters.h"

#include "host/catalogue/check_encoding.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>

namespace tarnwick::host {
namespace {

constexpr size_t kNone = std::string_view::npos;
constexpr size_t kLongestReference = 16;
constexpr std::string_view kEntities[] = {"amp", "lt", "gt", "quot", "apos"};

bool IsXmlCharacter(uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code > 0xDFFF && code < 0xFFFE) || (code > 0xFFFF && code < 0x110000);
}

bool NamesCharacter(std::string_view digits) {
  const bool hexadecimal = digits.starts_with('x');
  if (hexadecimal) digits.remove_prefix(1);
  uint32_t code = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, hexadecimal ? 16 : 10);
  return error == std::errc() && end == digits.data() + digits.size() && IsXmlCharacter(code);
}

// Does a reference stand at the "&"?
bool IsReference(std::string_view text, size_t at) {
  const std::string_view head = text.substr(at + 1, kLongestReference);
  const size_t end = head.find(';');
  if (end == kNone) return false;
  const std::string_view name = head.substr(0, end);
  return name.starts_with('#') ? NamesCharacter(name.substr(1)) : std::ranges::count(kEntities, name) > 0;
}

struct Section {
  std::string_view open, close;
};
constexpr Section kSections[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};

// Where the comment, CDATA section or instruction ends that opens at the "<"; `at` itself if none does.
size_t BehindSection(std::string_view text, size_t at) {
  for (const Section& section : kSections) {
    if (!text.substr(at).starts_with(section.open)) continue;
    const size_t close = text.find(section.close, at + section.open.size());
    return close == kNone ? text.size() : close + section.close.size();
  }
  return at;
}

size_t FirstBadReference(std::string_view text) {
  for (size_t at = text.find_first_of("&<"); at != kNone; at = text.find_first_of("&<", at)) {
    if (text[at] == '&' && !IsReference(text, at)) return at;
    at = std::max(BehindSection(text, at), at + 1);
  }
  return kNone;
}

size_t FirstControl(std::string_view text) {
  const auto found = std::ranges::find_if(text, [](char byte) {
    const auto code = static_cast<unsigned char>(byte);
    return code < 0x20 && !IsXmlCharacter(code);
  });
  return found == text.end() ? kNone : static_cast<size_t>(found - text.begin());
}

size_t LateDeclaration(std::string_view text) {
  const std::string_view declaration = XmlDeclaration(text);
  if (declaration.empty()) return kNone;
  const auto at = static_cast<size_t>(declaration.data() - text.data());
  return at == 0 || (at == kUtf8Mark.size() && text.starts_with(kUtf8Mark)) ? kNone : at;
}

}  // namespace

std::optional<Finding> FindCharacterFault(std::string_view text) {
  const size_t reference = FirstBadReference(text);
  const size_t control = FirstControl(text);
  const size_t declaration = LateDeclaration(text);
  const size_t first = std::min({reference, control, declaration});
  if (first == kNone) return std::nullopt;
  const char* const what =
      first == declaration ? "the XML declaration isn't at the very beginning"
      : first == control   ? "a control character, which XML doesn't allow"
                           : "'&' begins no reference that XML knows; write &amp; for it, or the character";
  return Finding{first, kNotWellFormed, {}, what};
}

}  // namespace tarnwick::host
