// Edge: the Steam AppInfo scan.
#include "steam/steam_appinfo_scan.h"

#include "foundation/log.h"
#include "foundation/machine/uninstall_key.h"
#include "foundation/seh_guard.h"
#include "foundation/structured_exception.h"
#include "foundation/text.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"
#include "steam/app_id_reader.h"
#include "steam/app_info_file.h"
#include "steam/steam_folders.h"
#include "steam/steam_guards.h"

namespace tarnwick {
namespace {

constexpr char kTag[] = "[SteamAppInfo]";

using InstalledApps = std::map<std::string, std::string>;

void CheckApp(SteamAppInfoReader& reader, const std::string& id, const std::string& location,
              ScanResults& results) {
  AppInfoDetails details;
  if (!ReadAppDetails(reader, ParseAppId(id), details)) {
    LogStream() << "  - ReadAppDetails Failed (Not in Index or Parse Error)\n";
    return;
  }
  if (details.executable.empty()) {
    LogStream() << "  - Skipped: No Executable in VDF\n";
    return;
  }
  const std::string exePath = StripOuterQuotes(CombinePath(StripOuterQuotes(location), details.executable));
  const bool found = FileExists(exePath);
  LogStream() << "  - Checking ExePath: " << exePath << (found ? " -> FOUND\n" : " -> NOT FOUND\n");
  if (!found) return;
  ScanResult result;
  result.name = details.name;
  result.exePath = exePath;
  result.launchUrl = "steam://run/" + id;  // the key's text, which may hold more than the number
  result.source = "Steam AppInfo: " + id;
  result.found = true;
  results.push_back(std::move(result));
  LogStream() << kTag << " Found: " << details.name << " (" << id << ") -> " << exePath << "\n";
}

// One app that can't be checked costs that app alone.
void CheckAppGuarded(SteamAppInfoReader& reader, const std::string& id, const std::string& location,
                     ScanResults& results) {
  try {
    LogExceptions("  - Exception checking app " + id + ": ",
                  [&] { CheckApp(reader, id, location, results); });
  } catch (...) {
    // What isn't a std::exception carries no text to log.
  }
}

// Nesting in the cache may overflow the stack, and a structured exception skips destructors: the file would
// stay open, and Steam unable to replace it, as long as the host lives. So the walk has a guard of its own,
// and what it caught is raised again when the reader is gone.
uint32_t CheckAllApps(SteamAppInfoReader& reader, const InstalledApps& apps, ScanResults& results) {
  return RunGuarded([&] {
    for (const auto& [id, location] : apps) CheckAppGuarded(reader, id, location, results);
  });
}

// False if the scan ends without its completion line. `fault` is the code of a structured exception to be
// raised again.
bool CheckApps(ScanResults& results, uint32_t& fault) {
  LogStream() << kTag << " Starting Steam AppInfo Search...\n";
  const std::string steamPath = GetAppInfoSteamPath();
  if (steamPath.empty()) {
    LogStream() << kTag << " Steam path not found.\n";
    return false;
  }
  const InstalledApps apps = CollectInstalledSteamApps();
  LogStream() << kTag << " Found " << apps.size() << " installed Steam apps in Registry.\n";
  if (apps.empty()) return false;
  SteamAppInfoReader reader;
  if (!LoadAppInfoIndex(reader, steamPath)) {
    LogStream() << kTag << " Failed to load appinfo.vdf index.\n";
    return false;
  }
  fault = CheckAllApps(reader, apps, results);
  return true;
}

}  // namespace

ScanResults ScanSteamAppInfo(const GameList&, const std::string&) {
  ScanResults results;
  bool completed = true;
  uint32_t fault = 0;
  LogCriticalErrors(kTag, [&] { completed = CheckApps(results, fault); });
  if (fault != 0) RaiseStructuredException(fault);
  if (completed) ReportCompletion(results, kTag);
  return results;
}

InstalledApps CollectInstalledSteamApps() {
  InstalledApps locations;
  CollectUninstallLocations(locations, "HKEY_LOCAL_MACHINE", kUninstallSubkey);
  CollectUninstallLocations(locations, "HKEY_LOCAL_MACHINE",
                            "SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall");
  CollectUninstallLocations(locations, "HKEY_CURRENT_USER", kUninstallSubkey);
  // Kept: exact and at the beginning, unlike the games scan's test (docs/decisions/letter-case.md).
  const std::string prefix = "Steam App ";
  InstalledApps apps;
  for (const auto& [name, location] : locations) {
    if (name.starts_with(prefix)) apps[name.substr(prefix.size())] = location;
  }
  return apps;
}

void CollectUninstallLocations(InstalledApps& locations, const std::string& hive, const std::string& subkey) {
  const RegistryRoot root =
      hive == "HKEY_CURRENT_USER" ? RegistryRoot::kCurrentUser : RegistryRoot::kLocalMachine;
  const std::string prefix = hive + "\\" + subkey + "\\";
  for (const std::string& name : ListNarrowSubkeys(OpenNarrowKey(root, subkey, RegistryView::k64))) {
    const std::string location = ReadRegistryString(prefix + name, "InstallLocation", "");
    if (!location.empty()) locations[name] = location;
  }
}

}  // namespace tarnwick
