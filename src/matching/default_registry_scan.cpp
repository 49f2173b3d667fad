// Edge: the first strategy. A signature with a registry key and no value name is looked up by
// "InstallLocation".
#include "matching/default_registry_scan.h"

#include "foundation/log.h"
#include "matching/paths.h"
#include "matching/registry.h"

namespace tarnwick {
namespace {

bool IsTested(const GameSignature& signature) {
  return !signature.RegistryKey.empty() && signature.RegistryPathKeyName.empty() &&
         signature.SourceKind != kSourceSteam;
}

std::string ReadInstallText(const GameSignature& signature, const std::string& userSid) {
  const std::string key = ExpandUserHive(signature.RegistryKey, userSid);
  const std::string text = ReadRegistryString(key, "InstallLocation", "");
  return text.empty() ? FindInstallValueByDisplayName(signature, key, signature.RegistryPathKeyName) : text;
}

}  // namespace

ScanResults ScanRegistryGames(const GameList& games, const std::string& userSid) {
  LogStream() << "Starting registry scan, " << games.size() << " games total...\n";
  ScanResults results;
  for (const GameSignature& signature : games) {
    if (!IsTested(signature)) continue;
    const std::string exe = ResolveExeFromInstallText(ReadInstallText(signature, userSid), signature);
    if (!FileExists(exe)) continue;
    ScanResult result;
    result.name = signature.DisplayName;
    result.exePath = exe;
    result.launchUrl = signature.LaunchUrl;
    result.source = signature.RegistryKey;
    result.found = true;
    results.push_back(result);
    LogStream() << "[Found] " << result.name << " -> " << exe << "\n";
  }
  LogStream() << "\nScan completed! Found " << results.size() << " games.\n";
  return results;
}

}  // namespace tarnwick
