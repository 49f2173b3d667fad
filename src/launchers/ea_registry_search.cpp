// Edge: EA titles. A publisher's subkey gives a product GUID, the Uninstall record of that GUID the name and
// the icon, and the icon file is the executable.
#include "launchers/ea_registry_search.h"

#include "foundation/log.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/registry_record.h"
#include "matching/found_report.h"
#include "matching/registry.h"

namespace tarnwick {
namespace {

const std::string kPrefix = "[EARegistrySearch]";

constexpr const char* kPublisherRoots[] = {
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\EA Games\)",       R"(HKEY_LOCAL_MACHINE\SOFTWARE\EA Sports\)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\BioWare\)",        R"(HKEY_LOCAL_MACHINE\SOFTWARE\Crytek\)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Origin\)",         R"(HKEY_LOCAL_MACHINE\SOFTWARE\Sims\)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\PopCap\)",         R"(HKEY_LOCAL_MACHINE\SOFTWARE\PopCap Games\)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Respawn\)",        R"(HKEY_LOCAL_MACHINE\SOFTWARE\Maxis\)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\CCCP\)",           R"(HKEY_LOCAL_MACHINE\SOFTWARE\Bullfrog Productions\)",
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Origin Systems\)",
};

using UninstallIndex = std::map<std::string, RegistryValues>;  // by subkey name, with case

// Read once and whole, so that each GUID costs a lookup and no search of the registry.
UninstallIndex ReadUninstallIndex() {
  UninstallIndex index;
  for (const std::string& name : EnumRegistrySubKeys(kUninstallKey, RegistryView::k32)) {
    index[name] = EnumRegistryValues(UninstallRecordKey(name), RegistryView::k32);
  }
  return index;
}

void AppendEntry(std::vector<EaGameEntry>& entries, const std::string& guid, const RegistryValues& record) {
  // Kept: an icon index behind the path stays, so a text that has one names no existing file
  // (docs/decisions/launcher-records.md).
  const std::string icon = StripOuterQuotes(ValueOrEmpty(record, "DisplayIcon"));
  const std::string displayName = ValueOrEmpty(record, "DisplayName");
  if (icon.empty() || !FileExists(icon) || displayName.empty()) return;
  entries.push_back({displayName, icon, UninstallRecordKey(guid), "DisplayIcon", guid});
}

void ReadPublisher(std::vector<EaGameEntry>& entries, const std::string& root,
                   const UninstallIndex& uninstall) {
  for (const std::string& name : EnumRegistrySubKeys(root, RegistryView::k32)) {
    const std::string guid = ReadRegistryString(root + name, "Product GUID", "");
    if (guid.empty()) continue;
    const auto record = uninstall.find(guid);
    if (record != uninstall.end()) AppendEntry(entries, guid, record->second);
  }
}

ScanResult ResultOf(const EaGameEntry& entry) {
  ScanResult result;
  result.name = ShownGameName(entry.displayName, entry.exePath);
  result.exePath = entry.exePath;
  result.launchUrl = "origin2://game/launch?offerIds=" + entry.productGuid;
  result.source = "EA Registry: " + entry.registryKey;
  return result;
}

}  // namespace

std::vector<EaGameEntry> GetEaGamesFromRegistry() {
  std::vector<EaGameEntry> entries;
  LogExceptions(kPrefix + " Error reading EA registry: ", [&] {
    const UninstallIndex uninstall = ReadUninstallIndex();
    for (const char* root : kPublisherRoots) ReadPublisher(entries, root, uninstall);
  });
  return entries;
}

ScanResults EARegistrySearch(const GameList&, const std::string&) {
  LogStream() << kPrefix << " Starting EA Registry Search...\n";
  ScanResults results;
  for (const EaGameEntry& entry : GetEaGamesFromRegistry()) {
    if (!FileExists(entry.exePath)) continue;
    ReportFound(results, kPrefix, ResultOf(entry));
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
