// Reader: pure text operations, built natively as well.
#include "foundation/text.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

namespace tarnwick {
namespace {

// None is left, not even one that an erasure joined together.
void EraseAll(std::string& text, const std::string& what) {
  for (size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at - std::min(at, what.size()))) {
    text.erase(at, what.size());
  }
}

void AppendControlCharacter(std::wstring& out, wchar_t unit) {
  constexpr wchar_t kDigits[] = L"0123456789abcdef";
  out += L"\\u00";
  out += kDigits[(unit >> 4) & 0xF];
  out += kDigits[unit & 0xF];
}

}  // namespace

const std::vector<std::string> IgnoredExeNames = {"uninstall.exe", "unins000.exe", "setup.exe",
                                                  "install.exe"};

void AppendJsonEscaped(std::wstring& out, const std::wstring& text) {
  for (const wchar_t unit : text) {
    if (unit == L'\\') {
      out += L"\\\\";
    } else if (unit == L'"') {
      out += L"\\\"";
    } else if (unit == L'\n') {
      out += L"\\n";
    } else if (unit < 0x20) {
      AppendControlCharacter(out, unit);
    } else {
      out += unit;
    }
  }
}

void AppendJsonMember(std::wstring& out, const wchar_t* key, const std::wstring& text) {
  if (out.back() != L'{') out += L',';
  out += L'"';
  out += key;
  out += L"\":\"";
  AppendJsonEscaped(out, text);
  out += L'"';
}

std::string Base64Encode(const unsigned char* bytes, size_t length) {
  constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((length * 4 + 2) / 3);
  for (size_t i = 0; i < length; i += 3) {
    const size_t left = std::min<size_t>(length - i, 3);
    const uint32_t group = static_cast<uint32_t>(bytes[i]) << 16 |
                           (left > 1 ? static_cast<uint32_t>(bytes[i + 1]) << 8 : 0u) |
                           (left > 2 ? static_cast<uint32_t>(bytes[i + 2]) : 0u);
    out += kAlphabet[group >> 18];
    out += kAlphabet[group >> 12 & 0x3F];
    out += left > 1 ? kAlphabet[group >> 6 & 0x3F] : '=';
    out += left > 2 ? kAlphabet[group & 0x3F] : '=';
  }
  return out;
}

void StripTrademarkSigns(std::string& name) {
  EraseAll(name, "\xE2\x84\xA2");
  EraseAll(name, "\xC2\xAE");
}

std::string ExeStemOrUnknown(const std::string& path) {
  const size_t separator = path.find_last_of("\\/");
  const size_t dot = path.rfind('.');
  if (separator == std::string::npos || dot == std::string::npos || dot < separator) return "Unknown";
  return path.substr(separator + 1, dot - separator - 1);
}

std::string ShownGameName(const std::string& name, const std::string& exePath) {
  std::string shown = name.empty() ? ExeStemOrUnknown(exePath) : name;
  StripTrademarkSigns(shown);
  return shown;
}

std::string HalveBackslashes(std::string text) {
  size_t kept = 0;
  for (size_t at = 0; at < text.size(); ++at) {
    text[kept++] = text[at];
    if (text[at] == '\\' && at + 1 < text.size() && text[at + 1] == '\\') ++at;
  }
  text.resize(kept);
  return text;
}

std::wstring NormalizeLocPath(const std::wstring& path) {
  std::wstring out;
  out.reserve(path.size());
  for (size_t i = 0; i < path.size(); ++i) {
    const wchar_t unit = path[i] == L'/' ? L'\\' : path[i];
    const bool repeated = unit == L'\\' && !out.empty() && out.back() == L'\\';
    if (!repeated || i == 1) out += unit;
  }
  return out;
}

std::wstring JoinWidePath(const std::wstring& first, const std::wstring& second) {
  if (first.empty()) return second;
  if (first.back() == L'\\' || first.back() == L'/') return first + second;
  return first + L'\\' + second;
}

std::string ToLowerBytes(std::string text) {
  for (char& byte : text) byte = static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
  return text;
}

std::string ToUpperBytes(std::string text) {
  for (char& byte : text) byte = static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
  return text;
}

std::string StripOuterQuotes(const std::string& text) {
  if (text.empty() || text.front() != '"' || text.back() != '"') return text;
  return text.size() < 2 ? std::string() : text.substr(1, text.size() - 2);
}

std::wstring UnquotedHead(const std::wstring& text) {
  if (text.empty() || text.front() != L'"') return text;
  const size_t end = text.find(L'"', 1);
  return end == std::wstring::npos ? text : text.substr(1, end - 1);
}

std::string TrimCharacters(const std::string& text, const char* characters) {
  const size_t first = text.find_first_not_of(characters);
  return first == std::string::npos ? std::string()
                                    : text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::string TrimLeadingSeparators(const std::string& path) {
  const size_t first = path.find_first_not_of("\\/");
  return first == std::string::npos ? std::string() : path.substr(first);
}

std::string TrimTrailingSeparators(const std::string& path) {
  return path.substr(0, path.find_last_not_of("\\/") + 1);
}

std::string ReadAll(std::istream& stream) {
  std::string text;
  char chunk[1 << 14];
  do {
    stream.read(chunk, sizeof(chunk));
    text.append(chunk, static_cast<size_t>(stream.gcount()));
  } while (stream);
  return text;
}

}  // namespace tarnwick
