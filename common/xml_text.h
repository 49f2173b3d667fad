#pragma once
// Text inside XML. Knows nothing of Windows.

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick::common {

// With references in place of the five characters that have a meaning in XML.
std::string XmlEscaped(std::string_view text);

// How many bytes the character at `at` takes; 0 where XML has no such character: bytes that are no UTF-8,
// surrogates, U+FFFE and U+FFFF, and control characters but tab, line feed and carriage return.
size_t XmlCharacterLength(std::string_view text, size_t at);

// The first byte that begins no character of XML, or npos.
size_t FindNoXml(std::string_view text);

// What stands there, for people: "U+0001", or "byte 0xFF" where it is no UTF-8.
std::string DescribeNoXml(std::string_view text, size_t at);

}  // namespace tarnwick::common
