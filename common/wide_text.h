#pragma once
// UTF-8 and UTF-16. Unlike the library's own conversions these keep zero characters inside the text.

#include <string>

namespace tarnwick::common {

enum class Malformed { kRefused, kReplaced };

// Malformed UTF-8 throws std::runtime_error, or has U+FFFD in its place.
std::wstring Wide(const std::string& text, Malformed malformed = Malformed::kRefused);

// A surrogate without its other half becomes U+FFFD.
std::string Narrow(const std::wstring& text);

}  // namespace tarnwick::common
