// Reader: the searches in JSON text that more than one launcher uses.
#include "launchers/json_text_reader.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;

// Where the key stands in its quotes. The search is for the key's first letter rather than for the quote
// before it: these texts are full of quotes.
size_t FindQuoted(std::string_view text, std::string_view key) {
  const std::string needle = std::string(key) + '"';
  size_t at = text.find(needle, 1);
  while (at != kNone && text[at - 1] != '"') at = text.find(needle, at + 1);
  return at == kNone ? kNone : at - 1;
}

}  // namespace

size_t JsonFindColon(std::string_view text, std::string_view key) {
  const size_t at = FindQuoted(text, key);
  return at == kNone ? kNone : text.find(':', at);
}

size_t JsonSkipBlanks(std::string_view text, size_t at) {
  return std::min(text.find_first_not_of(" \t\n\r", at), text.size());
}

size_t JsonFindClosingQuote(std::string_view text, size_t start) {
  size_t end = text.find('"', start);
  while (end != kNone && text[end - 1] == '\\') end = text.find('"', end + 1);
  return end;
}

std::string JsonFindString(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  if (colon == kNone) return {};
  const size_t quote = JsonSkipBlanks(text, colon + 1);
  if (quote == text.size() || text[quote] != '"') return {};
  const size_t end = JsonFindClosingQuote(text, quote + 1);
  return end == kNone ? std::string() : std::string(text.substr(quote + 1, end - quote - 1));
}

std::string JsonFindNextQuoted(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  if (colon == kNone) return {};
  const size_t quote = text.find('"', colon);
  if (quote == kNone) return {};
  const size_t end = text.find('"', quote + 1);
  return end == kNone ? std::string() : std::string(text.substr(quote + 1, end - quote - 1));
}

}  // namespace tarnwick
