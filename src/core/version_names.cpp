// Edge: what a file's version resource calls it.
#include "core/version_names.h"

#include "foundation/machine/versions.h"

#include <optional>

namespace tarnwick {
namespace {

// Keeps the first answer, an empty text too: later translations don't overwrite it.
void QueryOnce(const VersionBlock& block, VersionTranslation translation, const wchar_t* name,
               std::optional<std::wstring>& kept) {
  if (!kept) kept = VersionText(block, translation, name);
}

}  // namespace

std::wstring VersionName(const std::wstring& path) {
  const VersionBlock block = ReadVersionBlock(path);
  if (block.empty()) return {};
  std::optional<std::wstring> description;
  std::optional<std::wstring> product;
  for (const VersionTranslation translation : VersionTranslations(block)) {
    QueryOnce(block, translation, L"FileDescription", description);
    QueryOnce(block, translation, L"ProductName", product);
  }
  const std::wstring name = description.value_or(std::wstring());
  return name.empty() ? product.value_or(std::wstring()) : name;
}

}  // namespace tarnwick
