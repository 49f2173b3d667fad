#include "launchers/json_text_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string strict = tarnwick::JsonFindString(text, "a");
  const std::string loose = tarnwick::JsonFindNextQuoted(text, "a");
  // What is found stands in the text, in quotes; a quote inside has a backslash before it by the one rule,
  // and is never there by the other.
  if (!strict.empty() && text.find('"' + strict + '"') == std::string_view::npos) std::abort();
  if (!loose.empty() && text.find('"' + loose + '"') == std::string_view::npos) std::abort();
  if (loose.find('"') != std::string::npos || strict.starts_with('"')) std::abort();
  for (size_t at = strict.find('"'); at != std::string::npos; at = strict.find('"', at + 1)) {
    if (strict[at - 1] != '\\') std::abort();
  }
  return 0;
}
