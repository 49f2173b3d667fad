#pragma once
// Packages and caches as Windows and the Store leave them.

#include "desktop/desktop.h"
#include "foundation/machine/known_folders.h"

#include <string>

namespace tarnwick::tests {

inline const std::string kPackagesKey =
    R"(HKEY_CURRENT_USER\Software\Classes\Local Settings\Software\Microsoft\Windows\CurrentVersion\AppModel\Repository\Packages)";
inline const std::string kInstallServiceKey =
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\InstallService\State\CategoryCache)";
inline const std::string kInstallAgentKey =
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\InstallAgent\CategoryCache)";
inline const std::string kStoreFolder = R"(C:\TarnwickTest\Store\)";

inline std::string StoreCacheFolder() {
  return KnownFolderPath(KnownFolder::kLocalData) +
         R"(\Packages\Microsoft.WindowsStore_8wekyb3d8bbwe\LocalCache)";
}

inline std::string Manifest(const std::string& name, const std::string& executable) {
  return "<Package><Identity Version=\"1.0.0.0\"/><Properties><DisplayName>" + name +
         "</DisplayName><PublisherDisplayName>Studio</PublisherDisplayName></Properties><Applications>"
         "<Application Id=\"App\" Executable=\"" +
         executable + "\"/></Applications></Package>";
}

inline std::string FrameworkManifest(const std::string& element) {
  return "<Package><Properties><DisplayName>Runtime</DisplayName><" + element + ">true</" + element +
         "></Properties><Applications><Application Executable=\"a.exe\"/></Applications></Package>";
}

// Registers the package `name`_1.0.0.0_x64__8wekyb3d8bbwe, of the family `name`_8wekyb3d8bbwe. Returns its
// folder.
inline std::string RegisterPackage(desktop::Desktop& desktop, const std::string& name,
                                   const std::string& displayName) {
  const std::string key = kPackagesKey + "\\" + name + "_1.0.0.0_x64__8wekyb3d8bbwe";
  const std::string folder = kStoreFolder + name;
  desktop.Folder(folder);
  desktop.String(key, "PackageRootFolder", folder);
  desktop.String(key, "PackageFamilyName", name + "_8wekyb3d8bbwe");
  desktop.String(key, "DisplayName", displayName);
  return folder;
}

// Tells the Store's caches that a family's product is of this kind.
inline void CacheKind(desktop::Desktop& desktop, const std::string& family, const std::string& kind) {
  desktop.String(kInstallServiceKey + "\\" + family, "PackageFamilyName", family, desktop::View::k64);
  desktop.String(kInstallServiceKey + "\\" + family, "ProductId", "id of " + family, desktop::View::k64);
  desktop.File(StoreCacheFolder() + "\\" + family + ".json",
               R"({"Entitlements":[{"ProductId":"id of )" + family + R"(","ProductKind":")" + kind + "\"}]}");
}

}  // namespace tarnwick::tests
