// Reader: app ids. Written out here because the C library's unsigned long is wider on some platforms, and
// because the texts of the failures reach the log.
#include "steam/app_id_reader.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace tarnwick {
namespace {

bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

}  // namespace

uint32_t ParseAppId(const std::string& text) {
  // The C library sees the text up to its first NUL, which no rule below accepts either.
  size_t at = std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size());
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  if (at == text.size() || !IsDigit(text[at])) throw std::invalid_argument("invalid stoul argument");
  uint64_t value = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    value = value * 10 + static_cast<uint64_t>(text[at] - '0');
    if (value > std::numeric_limits<uint32_t>::max()) throw std::out_of_range("stoul argument out of range");
  }
  const auto number = static_cast<uint32_t>(value);
  return negative ? uint32_t{0} - number : number;
}

}  // namespace tarnwick
