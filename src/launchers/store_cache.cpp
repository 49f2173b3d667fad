// Edge: the registry keys and the folder of the Store's caches.
#include "launchers/store_cache.h"

#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/registry_record.h"
#include "matching/registry.h"

namespace tarnwick {
namespace {

constexpr const char* kCategoryKeys[] = {
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\InstallService\State\CategoryCache)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\InstallAgent\CategoryCache)",
};
const std::string kStoreCache = R"(\Packages\Microsoft.WindowsStore_8wekyb3d8bbwe\LocalCache)";

bool IsJsonName(std::wstring_view name) { return name.ends_with(L".json"); }

// Which value holds the data differs: the first one, by name, that yields a product counts.
FulfillmentData FulfillmentDataOf(const std::string& key) {
  RegistryValues values = EnumRegistryValues(key, RegistryView::k64);
  if (values.empty()) values = EnumRegistryValues(key, RegistryView::k32);
  for (const auto& [name, text] : values) {
    const FulfillmentData data = ParseFulfillmentData(text);
    if (!data.productId.empty()) return data;
  }
  return {};
}

void AddCategory(CategoryCache& cache, const std::string& key) {
  std::string family = ReadRegistryString(key, "PackageFamilyName", "");
  std::string productId = ReadRegistryString(key, "ProductId", "");
  if (productId.empty()) {
    const FulfillmentData data = FulfillmentDataOf(key);
    productId = data.productId;
    if (!data.packageFamilyName.empty()) family = data.packageFamilyName;
  }
  if (!family.empty() && !productId.empty()) cache.emplace(family, productId);
}

}  // namespace

CategoryCache LoadCategoryCache() {
  CategoryCache cache;
  for (const std::string key : kCategoryKeys) {
    for (const std::string& name : SubKeysOfSomeView(key)) AddCategory(cache, key + '\\' + name);
  }
  return cache;
}

EntitlementsCache LoadEntitlementsCache() {
  EntitlementsCache cache;
  const std::string localData = KnownFolderPath(KnownFolder::kLocalData);
  if (localData.empty() || !DirectoryExists(localData + kStoreCache)) return cache;
  LogExceptions("[UWP] Error reading EntitlementsCache: ", [&] {
    ForEach(WalkFiles(localData + kStoreCache, IsJsonName),
            [&](const FolderEntry& file) { ParseEntitlements(ReadAll(*OpenTextFile(file.path)), cache); });
  });
  return cache;
}

}  // namespace tarnwick
