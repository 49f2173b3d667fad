#include "foundation/text.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

// Code points 0 to 0xFFFF, as the bytes give them by twos; a surrogate stands for the replacement character.
std::wstring Units(const uint8_t* data, size_t size) {
  std::wstring units;
  for (size_t i = 0; i + 1 < size; i += 2) {
    const int unit = data[i] | data[i + 1] << 8;
    units += static_cast<wchar_t>(unit >= 0xD800 && unit <= 0xDFFF ? 0xFFFD : unit);
  }
  return units;
}

std::string ToUtf8(const std::wstring& units) {
  std::string text;
  for (const wchar_t wide : units) {
    const auto unit = static_cast<char16_t>(wide);
    if (unit < 0x80) {
      text += static_cast<char>(unit);
    } else if (unit < 0x800) {
      text += static_cast<char>(0xC0 | unit >> 6);
      text += static_cast<char>(0x80 | (unit & 0x3F));
    } else {
      text += static_cast<char>(0xE0 | unit >> 12);
      text += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
      text += static_cast<char>(0x80 | (unit & 0x3F));
    }
  }
  return text;
}

// Whatever the text, it is the value of the string literal that it makes.
void CheckJson(const std::wstring& units) {
  std::wstring json = L"\"";
  tarnwick::AppendJsonEscaped(json, units);
  json += L'"';
  Require(nlohmann::json::parse(ToUtf8(json)).get<std::string>() == ToUtf8(units));
}

std::string Decoded(const std::string& text) {
  static const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  uint32_t bits = 0;
  int count = 0;
  for (const char digit : text.substr(0, text.find('='))) {
    const size_t value = kAlphabet.find(digit);
    Require(value != std::string::npos);
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes += static_cast<char>(bits >> count & 0xFF);
  }
  return bytes;
}

void CheckBase64(const uint8_t* data, size_t size) {
  const std::string text = tarnwick::Base64Encode(data, size);
  Require(text.size() == (size + 2) / 3 * 4);
  Require(Decoded(text) == std::string(reinterpret_cast<const char*>(data), size));
}

void CheckNames(const std::string& text) {
  std::string name = text;
  tarnwick::StripTrademarkSigns(name);
  // Registered signs go last; a trade mark sign that their removal joins together stays.
  Require(name.find("\xC2\xAE") == std::string::npos);
  tarnwick::ExeStemOrUnknown(text);
  Require(tarnwick::ToUpperBytes(text).size() == text.size());
  Require(tarnwick::TrimLeadingSeparators(text).size() <= text.size());
  Require(tarnwick::TrimTrailingSeparators(text).size() <= text.size());
  Require(tarnwick::StripOuterQuotes(text).size() <= text.size());
}

void CheckPaths(const std::wstring& units) {
  const std::wstring path = tarnwick::NormalizeLocPath(units);
  Require(path.find(L'/') == std::wstring::npos);
  Require(path.find(L"\\\\", 1) == std::wstring::npos);
  Require(tarnwick::NormalizeLocPath(path) == path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::wstring units = Units(data, size);
  CheckJson(units);
  CheckBase64(data, size);
  CheckNames(std::string(reinterpret_cast<const char*>(data), size));
  CheckPaths(units);
  return 0;
}
