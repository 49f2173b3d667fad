// Edge: packaged games of the current user: which packages are games, and what is said of them.
#include "launchers/uwp_microsoft_store_scan.h"

#include "foundation/log.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/store_cache.h"
#include "launchers/uwp_packages.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/signature_index.h"

namespace tarnwick {
namespace {

const std::string kPrefix = "[UWP]";

struct Classification {
  std::vector<UwpPackage> catalogued;
  std::vector<UwpPackage> games;
};

struct StoreCaches {
  CategoryCache categories;
  EntitlementsCache entitlements;
};

bool IsGameByCache(const UwpPackage& package, const StoreCaches& caches) {
  const auto product = caches.categories.find(package.packageFamilyName);
  if (product == caches.categories.end()) return false;
  const auto kind = caches.entitlements.find(product->second);
  return kind != caches.entitlements.end() && ToLowerBytes(kind->second) == "game";
}

void Keep(std::vector<UwpPackage>& list, const UwpPackage& package, const std::string& why) {
  LogStream() << kPrefix << " Package " << why << ": " << package.displayName
              << " (Family: " << package.packageFamilyName << ")\n";
  list.push_back(package);
}

void Classify(const UwpPackage& package, const SignatureIndex& signatures, const StoreCaches& caches,
              Classification& classes) {
  if (package.isExcluded || package.installedLocation.empty()) return;
  if (FindSignature(signatures, package.packageFamilyName) != nullptr) {
    Keep(classes.catalogued, package, "in MGL");
  } else if (IsGameByCache(package, caches)) {
    Keep(classes.games, package, "identified as game via Cache");
  } else if (HasGameIndicatorFile(package.installedLocation)) {
    Keep(classes.games, package, "identified as game via indicator files");
  }
}

std::string FirstNonEmpty(const std::string& first, const std::string& second, const std::string& third) {
  if (!first.empty()) return first;
  return second.empty() ? third : second;
}

// What both kinds of result share. `signature` may be null.
ScanResult ResultOf(const UwpPackage& package, const std::string& exePath, const GameSignature* signature) {
  ScanResult result;
  result.found = true;
  result.exePath = exePath;
  result.source = "Microsoft Store (UWP)";
  result.launchUrl = "shell:AppsFolder\\" + package.packageFamilyName + "!App";
  if (signature != nullptr && !signature->LaunchUrl.empty()) result.launchUrl = signature->LaunchUrl;
  return result;
}

// False if the catalogue doesn't lead to an executable: the package's own manifest must.
bool ReportCatalogued(const UwpPackage& package, const GameSignature& signature, ScanResults& results) {
  if (signature.DefaultExe.empty()) return false;
  const std::string exePath = CombinePath(package.installedLocation, signature.DefaultExe);
  if (!FileExists(exePath)) return false;
  ScanResult result = ResultOf(package, exePath, &signature);
  result.name = FirstNonEmpty(signature.DisplayName, ReadAppxManifest(package.installedLocation).displayName,
                              package.displayName);
  LogStream() << kPrefix << " Found (MGL): " << result.name << " -> " << exePath << "\n";
  results.push_back(result);
  return true;
}

// Empty where the manifest names none, or the two texts make no path.
std::string ManifestExecutable(const UwpPackage& package, const AppxManifest& manifest) {
  if (package.installedLocation.empty() || manifest.executable.empty()) return {};
  return CombinePath(package.installedLocation, manifest.executable);
}

// `signature` is null for a package that the catalogue doesn't name.
void ReportGame(const UwpPackage& package, const GameSignature* signature, ScanResults& results) {
  const AppxManifest manifest = ReadAppxManifest(package.installedLocation);
  const std::string name = FirstNonEmpty(package.displayName, manifest.displayName,
                                         signature == nullptr ? std::string() : signature->DisplayName);
  if (name.empty()) {
    LogStream() << kPrefix << " Skipping package (no DisplayName): " << package.packageFamilyName << "\n";
    return;
  }
  // Whether the file is there isn't asked: the package is launched by its family name.
  const std::string exePath = ManifestExecutable(package, manifest);
  if (exePath.empty()) {
    LogStream() << kPrefix
                << " Skipping package (no installedLocation or ExePath): " << package.packageFamilyName
                << "\n";
    return;
  }
  ScanResult result = ResultOf(package, exePath, signature);
  result.name = name;
  ReportFound(results, kPrefix, result);
}

ScanResults ReportPackages(Classification classes, const SignatureIndex& signatures) {
  ScanResults results;
  for (const UwpPackage& package : classes.catalogued) {
    const GameSignature& signature = *FindSignature(signatures, package.packageFamilyName);
    if (!ReportCatalogued(package, signature, results)) classes.games.push_back(package);
  }
  for (const UwpPackage& package : classes.games) {
    ReportGame(package, FindSignature(signatures, package.packageFamilyName), results);
  }
  return results;
}

}  // namespace

ScanResults ScanMicrosoftStore(const GameList& games, const std::string&) {
  LogStream() << kPrefix << " Starting UWP/Microsoft Store game scan...\n";
  const SignatureIndex signatures = IndexSignatures(games, kSourceUwp, &GameSignature::GameInfo);
  LogStream() << kPrefix << " Found " << signatures.size() << " UWP games in MasterGameList.\n";
  const StoreCaches caches = {LoadCategoryCache(), LoadEntitlementsCache()};
  LogStream() << kPrefix << " CategoryCache: " << caches.categories.size()
              << " entries, EntitlementsCache: " << caches.entitlements.size() << " entries.\n";
  const std::vector<UwpPackage> packages = QueryUwpPackages();
  LogStream() << kPrefix << " Found " << packages.size() << " UWP packages.\n";
  Classification classes;
  for (const UwpPackage& package : packages) Classify(package, signatures, caches, classes);
  LogStream() << kPrefix << " Classified: " << classes.catalogued.size() << " packages in MGL, "
              << classes.games.size() << " packages identified as games.\n";
  const ScanResults results = ReportPackages(classes, signatures);
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
