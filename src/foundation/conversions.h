#pragma once
// UTF-8 and UTF-16. Narrow strings hold UTF-8 throughout the library; wide strings are what Windows calls
// take.

#include <string>

namespace tarnwick {

// Both conversions end at the text's first zero character, and give an empty text for an empty one. Malformed
// input is replaced (U+FFFD), never refused.
std::wstring Utf8ToWide(const std::string& text);

// Throws std::length_error if the system refuses the conversion altogether.
std::string WideToUtf8(const std::wstring& text);

// From the system's ANSI code page, for texts that a Windows call with an `A` gave.
std::wstring AnsiToWide(const std::string& text);
std::string AnsiToUtf8(const std::string& text);

}  // namespace tarnwick
