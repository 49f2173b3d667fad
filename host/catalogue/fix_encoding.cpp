// Edge: code pages.
#include "host/catalogue/fix_encoding.h"

#include "foundation/text.h"
#include "foundation/windows_api.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "host/catalogue/check_encoding.h"
#include "host/catalogue/check_findings.h"
#include "host/console.h"

namespace tarnwick::host {
namespace {

struct CodePage {
  std::string_view name;
  UINT number;
};
constexpr CodePage kCodePages[] = {
    {"WINDOWS-1250", 1250}, {"WINDOWS-1251", 1251}, {"WINDOWS-1252", 1252}, {"WINDOWS-1253", 1253},
    {"WINDOWS-1254", 1254}, {"WINDOWS-1255", 1255}, {"WINDOWS-1256", 1256}, {"WINDOWS-1257", 1257},
    {"WINDOWS-1258", 1258}, {"ISO-8859-1", 28591},  {"ISO-8859-2", 28592},  {"ISO-8859-5", 28595},
    {"ISO-8859-7", 28597},  {"ISO-8859-9", 28599},  {"ISO-8859-15", 28605},
};

std::optional<std::string> FromCodePage(const std::string& bytes, UINT page) {
  const int size = static_cast<int>(bytes.size());
  const int units = MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
  if (units <= 0) return std::nullopt;
  std::wstring wide(static_cast<size_t>(units), L'\0');
  MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), size, wide.data(), units);
  return Narrow(wide);
}

bool IsBigEndian(std::string_view bytes) {
  if (bytes.starts_with("\xFE\xFF")) return true;
  return !bytes.starts_with("\xFF\xFE") && bytes.starts_with('\0');
}

std::optional<std::string> FromUtf16(const std::string& bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::wstring wide;
  for (size_t at = 0; at < bytes.size(); at += 2) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    wide += static_cast<wchar_t>(IsBigEndian(bytes) ? first << 8 | second : second << 8 | first);
  }
  std::string text = Narrow(wide);
  if (Widen(text) != wide) return std::nullopt;
  return text;
}

std::optional<FixedText> Converted(std::optional<std::string> text, Check check, const std::string& from) {
  if (!text) return std::nullopt;
  FixedText fixed = FixDeclaration(*text);
  // What the declaration named is part of this step.
  fixed.steps.clear();
  fixed.counts.fill(0);
  AddStep(fixed, {0, check, "the text is converted from " + from + " to UTF-8"});
  return fixed;
}

std::optional<FixedText> ByDeclaration(const std::string& bytes) {
  const std::string name(DeclaredEncoding(bytes));
  const auto* const row = std::ranges::find(kCodePages, ToUpperBytes(name), &CodePage::name);
  if (row == std::end(kCodePages)) return std::nullopt;
  return Converted(FromCodePage(bytes, row->number), kNoUtf8, name);
}

FixedText Unchanged(const std::string& bytes) {
  FixedText fixed;
  fixed.text = bytes;
  return fixed;
}

}  // namespace

FixedText FixEncoding(const std::string& bytes) {
  if (IsUtf16(bytes)) return Converted(FromUtf16(bytes), kUtf16, "UTF-16").value_or(Unchanged(bytes));
  if (FirstNoUtf8(bytes) == bytes.npos) return FixDeclaration(bytes);
  return ByDeclaration(bytes).value_or(Unchanged(bytes));
}

}  // namespace tarnwick::host
