#include "matching/path_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckTokens(const std::vector<std::string>& tokens, char separator) {
  for (const std::string& token : tokens) {
    Require(!token.empty());
    Require(token.find(separator) == std::string::npos);
  }
}

void CheckFragment(const std::string& text) {
  const std::string fragment = tarnwick::NormalizeFragment(text);
  Require(fragment.find('/') == std::string::npos);
  Require(tarnwick::NormalizeFragment(fragment) == fragment);
}

// The merged path is the folder, or the folder and an end of the fragment.
void CheckMerge(const std::string& folder, const std::string& fragment) {
  const bool overlaps = tarnwick::FolderOverlapsFragment(folder, fragment);
  const std::string merged = tarnwick::MergeOverlappingFragment(folder, fragment);
  if (overlaps) Require(merged.size() <= folder.size() + fragment.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckTokens(tarnwick::SplitCommandLine(text), '"');
  CheckTokens(tarnwick::SplitPipeList(text), '|');
  CheckTokens(tarnwick::SplitPathSegments(text), '\\');
  Require(text.ends_with(tarnwick::GetExtension(text)));
  CheckFragment(text);
  const size_t bar = std::min(text.find('|'), size);
  const std::string head = text.substr(0, bar);
  const std::string tail = text.substr(std::min(bar + 1, size));
  CheckMerge(head, tail);
  Require(tarnwick::ContainsIgnoreCase(text, head) == !head.empty());
  return 0;
}
