// Edge: where packages lie, by the registry or by the folders of packages.
#include "launchers/uwp_packages.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/folders.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/registry_record.h"
#include "matching/paths.h"
#include "matching/registry.h"

#include <algorithm>
#include <exception>
#include <iterator>

namespace tarnwick {
namespace {

const std::string kPrefix = "[UWP]";
const std::string kPackagesKey =
    R"(HKEY_CURRENT_USER\Software\Classes\Local Settings\Software\Microsoft\Windows\CurrentVersion\AppModel\Repository\Packages)";
const std::string kManifestName = "AppxManifest.xml";

// Runs `read`, which reads the package `name`. Where it throws, that is logged and costs this package alone.
template <class Read>
void PassOverFailing(const std::string& name, Read&& read) {
  LogExceptions(kPrefix + " Error processing package " + name + ": ", read);
}

UwpPackage RegisteredPackage(const std::string& fullName) {
  const std::string key = kPackagesKey + '\\' + fullName;
  UwpPackage package;
  package.fullName = fullName;
  package.installedLocation = ReadRegistryString(key, "PackageRootFolder", "");
  package.packageFamilyName = ReadRegistryString(key, "PackageFamilyName", "");
  if (package.packageFamilyName.empty()) package.packageFamilyName = PackageFamilyNameOf(fullName);
  package.displayName = ReadRegistryString(key, "DisplayName", "");
  if (IsResourceReference(package.displayName)) package.displayName.clear();
  const AppxManifest manifest = ReadAppxManifest(package.installedLocation);
  package.publisher = manifest.publisherDisplayName;
  package.isExcluded = manifest.isFramework;
  return package;
}

std::vector<UwpPackage> RegisteredPackages() {
  LogStream() << kPrefix << " Querying packages via Registry: " << kPackagesKey << "\n";
  std::vector<UwpPackage> packages;
  for (const std::string& name : SubKeysOfSomeView(kPackagesKey)) {
    PassOverFailing(name, [&] { packages.push_back(RegisteredPackage(name)); });
  }
  return packages;
}

void AppendPackageOfFolder(std::vector<UwpPackage>& packages, const std::string& parent,
                           const std::string& name) {
  const std::string folder = parent + '\\' + name;
  if (!FileExists(folder + '\\' + kManifestName)) return;
  const AppxManifest manifest = ReadAppxManifest(folder);
  packages.push_back({name, PackageFamilyNameOf(name), manifest.displayName, manifest.publisherDisplayName,
                      folder, manifest.isFramework});
}

// Throws std::filesystem::filesystem_error where the folder can't be listed.
void WalkPackageFolder(std::vector<UwpPackage>& packages, const std::string& folder) {
  LogStream() << kPrefix << " Scanning directory: " << folder << "\n";
  const size_t before = packages.size();
  size_t scanned = 0;
  ForEach(ListFolders(folder), [&](const FolderEntry& entry) {
    ++scanned;
    const std::string name = WideToUtf8(entry.name);
    PassOverFailing(name, [&] { AppendPackageOfFolder(packages, folder, name); });
  });
  LogStream() << kPrefix << " Scanned " << scanned << " directories in " << folder << ", found "
              << packages.size() - before << " packages with manifests.\n";
}

void ScanPackageFolder(std::vector<UwpPackage>& packages, const std::string& folder) {
  if (!DirectoryExists(folder)) {
    LogStream() << kPrefix << " Path does not exist or is not a directory: " << folder << "\n";
    return;
  }
  try {
    WalkPackageFolder(packages, folder);
  } catch (const std::exception& error) {
    LogStream() << kPrefix << " Error scanning " << folder << ": " << error.what() << "\n";
    LogStream() << kPrefix << " Note: WindowsApps directory may require special permissions.\n";
  }
}

}  // namespace

std::string PackageFamilyNameOf(const std::string& fullName) {
  const size_t first = fullName.find('_');
  const size_t last = fullName.rfind('_');
  return first == std::string::npos || first == 0 ? std::string()
                                                  : fullName.substr(0, first) + fullName.substr(last);
}

std::vector<UwpPackage> QueryUwpPackages() {
  std::vector<UwpPackage> packages = RegisteredPackages();
  if (!packages.empty()) {
    LogStream() << kPrefix << " Found " << packages.size() << " packages via Registry.\n";
    return packages;
  }
  LogStream() << kPrefix << " Registry query returned no packages, attempting fallback...\n";
  LogStream() << kPrefix << " Falling back to file system scan.\n";
  return ScanPackageFolders({R"(C:\Program Files\WindowsApps)", R"(C:\Program Files (x86)\WindowsApps)"});
}

std::vector<UwpPackage> ScanPackageFolders(const std::vector<std::string>& folders) {
  std::vector<UwpPackage> packages;
  for (const std::string& folder : folders) ScanPackageFolder(packages, folder);
  return packages;
}

AppxManifest ReadAppxManifest(const std::string& installedLocation) {
  if (installedLocation.empty()) return {};
  return ParseAppxManifest(ReadAll(*OpenTextFile(CombinePath(installedLocation, kManifestName))));
}

bool HasGameIndicatorFile(const std::string& installedLocation) {
  constexpr const char* kIndicators[] = {"xboxservices.config", "MicrosoftGame.config", "GamePage.xaml",
                                         "GamePage.xbf"};
  return std::any_of(std::begin(kIndicators), std::end(kIndicators),
                     [&](const char* name) { return FileExists(CombinePath(installedLocation, name)); });
}

}  // namespace tarnwick
