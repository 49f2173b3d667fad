#include "support/debug_capture.h"

#include "common/debug_output.h"

#include <mutex>
#include <optional>
#include <regex>

namespace tarnwick::tests {
namespace {

// Never taken inside of the other: the texts come while the shared capture holds a mutex of its own.
std::mutex g_countMutex;
std::mutex g_textsMutex;

std::vector<std::string> g_texts;
int g_captures = 0;
std::optional<common::DebugOutputCapture> g_output;

// A wide text that isn't wanted comes again in the ANSI code page.
bool IsNarrow(const common::DebugText& text) { return std::holds_alternative<std::string>(text); }

void Keep(const common::DebugText& text) {
  const std::lock_guard lock(g_textsMutex);
  g_texts.push_back(std::get<std::string>(text));
}

}  // namespace

DebugCapture::DebugCapture() {
  const std::lock_guard lock(g_countMutex);
  if (g_captures++ > 0) return;
  Clear();
  g_output.emplace(IsNarrow, Keep);
}

DebugCapture::~DebugCapture() {
  const std::lock_guard lock(g_countMutex);
  if (--g_captures == 0) g_output.reset();
}

std::vector<std::string> DebugCapture::Raw() const {
  std::lock_guard lock(g_textsMutex);
  return g_texts;
}

std::vector<std::string> DebugCapture::Lines() const {
  static const std::regex kPrefix(R"(^\[Tarnwick\] (\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] )?)");
  std::vector<std::string> lines;
  for (std::string text : Raw()) {
    text = std::regex_replace(text, kPrefix, "", std::regex_constants::format_first_only);
    if (!text.empty() && text.back() == '\n') text.pop_back();
    lines.push_back(text);
  }
  return lines;
}

std::vector<std::string> DebugCapture::LinesWith(const std::string& prefix) const {
  std::vector<std::string> lines = Lines();
  std::erase_if(lines, [&](const std::string& line) { return line.rfind(prefix, 0) != 0; });
  return lines;
}

void DebugCapture::Clear() {
  std::lock_guard lock(g_textsMutex);
  g_texts.clear();
}

}  // namespace tarnwick::tests
