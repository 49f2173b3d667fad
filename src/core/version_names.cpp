// Edge: reads version resources.
#include "core/version_names.h"

#include "foundation/windows_api.h"

#include <cwchar>
#include <optional>
#include <vector>

namespace tarnwick {
namespace {

using Block = std::vector<unsigned char>;

// One row of the resource's list of translations.
struct Translation {
  WORD language;
  WORD codePage;
};

// The whole resource; empty if there is none.
Block ReadBlock(const std::wstring& path) {
  DWORD ignored = 0;
  Block block(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  if (!block.empty() &&
      !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) {
    block.clear();
  }
  return block;
}

std::vector<Translation> Translations(const Block& block) {
  void* rows = nullptr;
  UINT bytes = 0;
  if (!VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &rows, &bytes) || rows == nullptr)
    return {};
  const auto* first = static_cast<const Translation*>(rows);
  return {first, first + bytes / sizeof(Translation)};
}

// Keeps the first answer, an empty text too: later translations don't overwrite it.
void QueryOnce(const Block& block, Translation translation, const wchar_t* name,
               std::optional<std::wstring>& kept) {
  if (kept) return;
  wchar_t query[64];
  swprintf(query, 64, L"\\StringFileInfo\\%04x%04x\\%ls", translation.language, translation.codePage, name);
  void* text = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(block.data(), query, &text, &length) || length == 0 || text == nullptr) return;
  const auto* units = static_cast<const wchar_t*>(text);
  kept = std::wstring(units, wcsnlen(units, length));
}

}  // namespace

std::wstring VersionName(const std::wstring& path) {
  const Block block = ReadBlock(path);
  if (block.empty()) return {};
  std::optional<std::wstring> description;
  std::optional<std::wstring> product;
  for (const Translation translation : Translations(block)) {
    QueryOnce(block, translation, L"FileDescription", description);
    QueryOnce(block, translation, L"ProductName", product);
  }
  const std::wstring name = description.value_or(std::wstring());
  return name.empty() ? product.value_or(std::wstring()) : name;
}

}  // namespace tarnwick
