// Edge: the registry keys and the folder of the Store's caches.
#include "launchers/store_cache.h"

#include "foundation/files.h"
#include "foundation/log.h"
#include "launchers/registry_record.h"
#include "matching/registry.h"

namespace tarnwick {
namespace {

constexpr const char* kCategoryKeys[] = {
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\InstallService\State\CategoryCache)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\InstallAgent\CategoryCache)",
};
constexpr int kLocalData = 0x1C;  // CSIDL_LOCAL_APPDATA
const std::string kStoreCache = R"(\Packages\Microsoft.WindowsStore_8wekyb3d8bbwe\LocalCache)";

// Which value holds the data differs: the first one, by name, that yields a product counts.
FulfillmentData FulfillmentDataOf(const std::string& key) {
  RegistryValues values = EnumRegistryValues(key, k64BitView);
  if (values.empty()) values = EnumRegistryValues(key, k32BitView);
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
  const std::string localData = ShellFolder(kLocalData);
  if (localData.empty() || !DirectoryExists(localData + kStoreCache)) return cache;
  LogExceptions("[UWP] Error reading EntitlementsCache: ", [&] {
    ForEachFile(PathFromUtf8(localData + kStoreCache), false, [&](const std::filesystem::path& path) {
      if (!path.native().ends_with(L".json")) return;
      std::ifstream file(path);
      ParseEntitlements(ReadAll(file), cache);
    });
  });
  return cache;
}

}  // namespace tarnwick
