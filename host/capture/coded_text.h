#pragma once
// Characters inside bytes that may be anything: where each stands, and how to put another in its place
// without moving a byte.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::host {

enum class Coding {
  kUtf8,   // a byte that is no UTF-8 counts as a character of the ANSI code page
  kUtf16,  // little-endian
};

// A character can also stand as \uXXXX or, in UTF-8, as the percent codes of its bytes.
struct CodedText {
  Coding coding = Coding::kUtf8;
  std::u32string text;       // as it stands
  std::u32string folded;     // in lower case, character by character
  std::vector<uint32_t> at;  // where each character begins, and at last where the bytes end
};

// Bytes before `offset` are passed over, as is a last odd byte of UTF-16.
CodedText Decode(std::string_view bytes, Coding coding, size_t offset = 0);

// Writes characters over those from `first` on, each in its predecessor's form. One that would need more or
// fewer bytes becomes as many letters x as fit.
void Overwrite(std::string& bytes, const CodedText& coded, size_t first, std::u32string_view characters);

char32_t LowerCase(char32_t character);
char32_t UpperCase(char32_t character);
std::u32string Folded(std::u32string_view text);

// A letter or digit of any script.
bool IsWordCharacter(char32_t character);

}  // namespace tarnwick::host
