// Reader: the searches in JSON text that more than one launcher uses.
#include "launchers/json_text_reader.h"

#include <algorithm>
#include <cstdint>
#include <optional>

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

// The value is looked for as JsonFindString does.
bool JsonFindBool(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  return colon != kNone && text.substr(JsonSkipBlanks(text, colon + 1)).starts_with("true");
}

// The list is looked for as JsonFindString looks for a value.
std::vector<std::string> JsonFindStringArray(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  if (colon == kNone) return {};
  const size_t open = JsonSkipBlanks(text, colon + 1);
  if (open == text.size() || text[open] != '[') return {};
  const size_t close = text.find(']', open + 1);
  if (close == kNone) return {};
  const std::string_view inner = text.substr(open + 1, close - open - 1);
  std::vector<std::string> elements;
  // Kept: the first step takes the opening double quote for a separator and steps over it, so the test for a
  // quote behind it always fails and the list stays empty. So no category filters a game
  // (docs/decisions/json-text.md).
  for (size_t at = 0; (at = inner.find_first_not_of(" \t\n\r,\"", at)) != kNone;) {
    at = inner.find_first_not_of(" \t\n\r,", at);
    if (at == kNone || inner[at] != '"') break;
    const size_t end = JsonFindClosingQuote(inner, at + 1);
    if (end == kNone) break;
    elements.emplace_back(inner.substr(at + 1, end - at - 1));
    at = end + 1;
  }
  return elements;
}

// Unlike JsonFindStringArray it accepts anything between the colon and the bracket.
std::vector<std::string_view> JsonFindObjectArray(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  const size_t open = colon == kNone ? kNone : text.find('[', colon);
  if (open == kNone) return {};
  std::vector<std::string_view> objects;
  std::optional<size_t> start;
  // Below 0 after closing braces that were never opened: as many must open before an object begins again.
  int64_t depth = 0;
  for (size_t at = open + 1; at < text.size(); ++at) {
    const char byte = text[at];
    if (byte == '{') {
      if (depth++ == 0) start = at;
    } else if (byte == '}') {
      if (depth-- == 1 && start) {
        objects.push_back(text.substr(*start, at + 1 - *start));
        start.reset();
      }
    } else if (byte == ']' && depth == 0) {
      break;
    }
  }
  return objects;
}

}  // namespace tarnwick
