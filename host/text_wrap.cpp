#include "host/text_wrap.h"

#include <sstream>

#include "host/text_width.h"

namespace tarnwick::host {
namespace {

// Where the character behind `at` begins.
size_t NextCharacter(const std::string& text, size_t at) {
  do ++at;
  while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80);
  return at;
}

// How many bytes of a word fit: up to behind the last backslash that does, at least one character.
size_t FittingBytes(const std::string& word, size_t columns) {
  size_t fitting = 0;
  size_t broken = 0;
  for (size_t at = 0; at < word.size();) {
    at = NextCharacter(word, at);
    if (ConsoleCells(word.substr(0, at)) > columns) break;
    fitting = at;
    if (word[at - 1] == '\\') broken = at;
  }
  if (fitting == 0) fitting = NextCharacter(word, 0);
  return broken > 0 && fitting < word.size() ? broken : fitting;
}

bool Fits(const std::string& line, const std::string& word, size_t columns) {
  return ConsoleCells(line) + 1 + ConsoleCells(word) <= columns;
}

// A long path begins on the line that it stands in where a good part of it fits there.
constexpr size_t kWorthBeginning = 12;

void AppendWord(std::vector<std::string>& lines, std::string word, size_t columns) {
  while (!word.empty()) {
    std::string& line = lines.back();
    const bool begins = line.empty();
    if (!begins && Fits(line, word, columns)) {
      line += ' ' + word;
      return;
    }
    const size_t taken = begins ? 0 : ConsoleCells(line) + 1;
    const bool isLong = ConsoleCells(word) > columns;
    if (!begins && (!isLong || taken + kWorthBeginning > columns)) {
      lines.emplace_back();
      continue;
    }
    const size_t bytes = FittingBytes(word, columns - taken);
    line += (begins ? "" : " ") + word.substr(0, bytes);
    word.erase(0, bytes);
    if (!word.empty()) lines.emplace_back();
  }
}

}  // namespace

std::vector<std::string> WrappedLines(const std::string& text, size_t columns) {
  const std::string printable = PrintableText(text);
  if (columns == 0) return {printable};
  std::vector<std::string> lines(1);
  std::istringstream words(printable);
  for (std::string word; words >> word;) AppendWord(lines, word, columns);
  return lines;
}

}  // namespace tarnwick::host
