// Reader: path operations on the text alone.
#include "matching/path_text.h"

#include "foundation/text.h"

#include <algorithm>
#include <utility>

namespace tarnwick {
namespace {

std::vector<std::string> SplitNonEmpty(const std::string& text, char separator) {
  std::vector<std::string> tokens;
  size_t start = 0;
  while (start <= text.size()) {
    const size_t end = std::min(text.find(separator, start), text.size());
    if (end > start) tokens.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return tokens;
}

// A folder and a fragment made ready for the overlap test, in their own case.
struct Overlap {
  std::string folder;    // without trailing backslashes
  std::string fragment;  // without leading backslashes
};

Overlap PrepareOverlap(const std::string& folder, const std::string& fragment) {
  Overlap overlap{NormalizeFragment(folder), NormalizeFragment(fragment)};
  overlap.fragment.erase(0, std::min(overlap.fragment.find_first_not_of('\\'), overlap.fragment.size()));
  overlap.folder.erase(overlap.folder.find_last_not_of('\\') + 1);
  return overlap;
}

bool HasSegment(const std::string& folder, const std::string& head) {
  const std::vector<std::string> segments = SplitNonEmpty(ToLowerBytes(folder), '\\');
  return std::any_of(segments.begin(), segments.end(), [&](const std::string& segment) {
    return segment.find(':') == std::string::npos && segment == head;
  });
}

std::string LowerHead(const std::string& fragment) {
  return ToLowerBytes(fragment.substr(0, fragment.find('\\')));
}

}  // namespace

std::vector<std::string> SplitCommandLine(const std::string& text) {
  std::vector<std::string> tokens;
  std::string current;
  bool inQuotes = false;
  const auto finish = [&] {
    if (!current.empty()) tokens.push_back(std::exchange(current, {}));
  };
  for (const char byte : text) {
    if (byte == '"') {
      // Only the closing quote ends a token: text before an opening one joins the quoted text.
      if (inQuotes) finish();
      inQuotes = !inQuotes;
    } else if (!inQuotes && (byte == ' ' || byte == '\t')) {
      finish();
    } else {
      current += byte;
    }
  }
  finish();
  return tokens;
}

std::string GetExtension(const std::string& path) {
  const size_t dot = path.rfind('.');
  return dot == std::string::npos || dot + 1 == path.size() ? std::string() : path.substr(dot);
}

bool ContainsIgnoreCase(const std::string& text, const std::string& needle) {
  if (text.empty() || needle.empty()) return false;
  return ToUpperBytes(text).find(ToUpperBytes(needle)) != std::string::npos;
}

std::vector<std::string> SplitPipeList(const std::string& text) { return SplitNonEmpty(text, '|'); }

std::vector<std::string> SplitPathSegments(const std::string& path) { return SplitNonEmpty(path, '\\'); }

std::string NormalizeFragment(const std::string& text) {
  std::string fragment = text;
  std::replace(fragment.begin(), fragment.end(), '/', '\\');
  while (fragment.size() >= 2 && fragment[0] == '\\' && fragment[1] != '\\') fragment.erase(0, 1);
  return fragment;
}

bool FolderOverlapsFragment(const std::string& folder, const std::string& fragment) {
  const Overlap overlap = PrepareOverlap(folder, fragment);
  if (overlap.folder.empty() || overlap.fragment.empty()) return false;
  return HasSegment(overlap.folder, LowerHead(overlap.fragment));
}

std::string MergeOverlappingFragment(const std::string& folder, const std::string& fragment) {
  const Overlap overlap = PrepareOverlap(folder, fragment);
  if (!HasSegment(overlap.folder, LowerHead(overlap.fragment)))
    return overlap.folder + '\\' + overlap.fragment;
  const size_t separator = overlap.fragment.find('\\');
  const std::string tail =
      separator == std::string::npos ? std::string() : overlap.fragment.substr(separator + 1);
  return tail.empty() ? overlap.folder : overlap.folder + '\\' + tail;
}

}  // namespace tarnwick
