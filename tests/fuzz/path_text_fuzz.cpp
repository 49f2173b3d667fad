#include "matching/path_text.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string head = text.substr(0, size / 2);
  const std::string tail = text.substr(size / 2);
  tarnwick::SplitCommandLine(text);
  tarnwick::GetExtension(text);
  tarnwick::SplitPipeList(text);
  tarnwick::NormalizeFragment(text);
  if (tarnwick::FolderOverlapsFragment(head, tail)) tarnwick::MergeOverlappingFragment(head, tail);
  return 0;
}
