// Reader: places of findings. The findings are sorted first, so that one walk over the text places them all.
#include "host/catalogue/check_findings.h"

#include "host/catalogue/check_encoding.h"

#include <algorithm>
#include <utility>

namespace tarnwick::host {
namespace {

constexpr size_t kMostQuoted = 80;

bool IsTrail(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// How many UTF-16 units the character takes whose first byte this is; none for its other bytes.
size_t UnitsOf(char byte) {
  if (IsTrail(byte)) return 0;
  return static_cast<unsigned char>(byte) >= 0xF0 ? 2 : 1;
}

struct Walk {
  std::string_view text;
  size_t at = 0;
  size_t line = 1;
  size_t column = 1;
};

void WalkTo(Walk& walk, size_t target) {
  for (target = std::min(target, walk.text.size()); walk.at < target; ++walk.at) {
    const char byte = walk.text[walk.at];
    if (byte == '\n') {
      ++walk.line;
      walk.column = 1;
    } else if (!IsTrail(byte)) {
      ++walk.column;
    }
  }
}

size_t BehindMark(std::string_view text) { return text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0; }

}  // namespace

void AddFinding(Findings& findings, Finding finding) {
  ++(RowOf(finding.check).severity == Severity::kError ? findings.errors : findings.warnings);
  if (findings.list.size() < kMostFindings) findings.list.push_back(std::move(finding));
}

void PlaceFindings(Findings& findings, std::string_view text) {
  std::ranges::sort(findings.list, {},
                    [](const Finding& finding) { return std::pair(finding.at, finding.check); });
  Walk walk{text, BehindMark(text)};
  for (Finding& finding : findings.list) {
    WalkTo(walk, finding.at);
    finding.line = walk.line;
    finding.column = walk.column;
  }
}

size_t OffsetOf(std::string_view text, size_t line, size_t column) {
  size_t at = BehindMark(text);
  for (; line > 1; --line) {
    const size_t end = text.find('\n', at);
    if (end == text.npos) return text.size();
    at = end + 1;
  }
  for (size_t units = 1; at < text.size() && text[at] != '\n'; ++at) {
    units += UnitsOf(text[at]);
    if (units > column) break;
  }
  return at;
}

std::string Shortened(std::string_view text, size_t most) {
  if (text.size() <= most) return std::string(text);
  size_t end = most;
  while (end > 0 && IsTrail(text[end])) --end;
  return std::string(text.substr(0, end)) + "...";
}

std::string Quoted(std::string_view text) {
  std::string shown = "'" + Shortened(text, kMostQuoted) + "'";
  std::ranges::replace_if(shown, [](char byte) { return static_cast<unsigned char>(byte) < 0x20; }, ' ');
  return shown;
}

}  // namespace tarnwick::host
