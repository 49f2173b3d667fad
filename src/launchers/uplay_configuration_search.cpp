// Edge: Ubisoft games, from the launcher's configuration cache and its Uninstall entries.
#include "launchers/uplay_configuration_search.h"

#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/registry_record.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"

#include <map>
#include <new>

namespace tarnwick {
namespace {

const std::string kPrefix = "[UplayConfigurationSearch]";

using InstallsByName = std::map<std::string, UplayInstallEntry>;

std::string ConfigurationsPath() {
  const std::string launcher = ReadRegistryString(UninstallRecordKey("Uplay"), "InstallLocation", "");
  return launcher.empty() ? std::string() : CombinePath(launcher, "cache\\configuration\\configurations");
}

InstallsByName IndexInstalls() {
  InstallsByName installs;
  for (const UplayInstallEntry& entry : FindUplayInstalls()) installs[entry.displayName] = entry;
  return installs;
}

// Of each list only the first element is tried.
std::string FindExe(const UplayConfigRecord& record, const std::string& installLocation) {
  for (const auto* executables : {&record.offlineExecutables, &record.onlineExecutables}) {
    if (executables->empty()) continue;
    const UplayExecutable& first = executables->front();
    const std::string path = BuildUplayExePath(installLocation, first.append, first.relative);
    if (FileExists(path)) return path;
  }
  return {};
}

void ReportRecord(ScanResults& results, const UplayConfigRecord& record,
                  const InstallsByName& installsByName) {
  const auto install = installsByName.find(record.name);
  if (install == installsByName.end()) return;
  const UplayInstallEntry& entry = install->second;
  ScanResult result;
  result.exePath = FindExe(record, entry.installLocation);
  if (result.exePath.empty()) return;
  result.name = record.name;
  StripTrademarkSigns(result.name);
  if (!record.installId.empty()) result.launchUrl = "uplay://launch/" + record.installId + "/0";
  result.source = entry.keyPath;
  ReportFound(results, kPrefix, result);
}

// Empty texts for values that are missing.
UplayInstallEntry ReadInstall(const std::string& keyName) {
  UplayInstallEntry entry;
  entry.keyPath = UninstallRecordKey(keyName);
  entry.valueName = "InstallLocation";
  entry.installLocation = ReadRegistryString(entry.keyPath, "InstallLocation", "");
  entry.displayName = ReadRegistryString(entry.keyPath, "DisplayName", "");
  const size_t blank = keyName.rfind(' ');
  if (blank != std::string::npos) entry.installSuffix = keyName.substr(blank + 1);
  return entry;
}

}  // namespace

ScanResults ScanUplayConfigurations() {
  LogStream() << "[UplayConfigurationSearch] Starting Uplay Configuration Search...\n";
  const std::string path = ConfigurationsPath();
  std::vector<UplayConfigRecord> records;
  if (FileExists(path)) records = ParseUplayConfigurations(path);
  const InstallsByName installsByName = IndexInstalls();
  ScanResults results;
  for (const UplayConfigRecord& record : records) ReportRecord(results, record, installsByName);
  ReportCompletion(results, kPrefix);
  return results;
}

std::vector<UplayConfigRecord> ParseUplayConfigurations(const std::string& path) {
  constexpr std::streamoff kTooLarge = 0x80000000;
  // As bytes: each record is framed with the byte 0x1A, which ends a file that Windows opens as text. The
  // reader takes the carriage returns off itself.
  const DataFile file = OpenBinaryFile(path);
  if (!*file) return {};
  if (file->seekg(0, std::ios::end).tellg() >= kTooLarge) throw std::bad_alloc();
  file->seekg(0);
  return ReadUplayConfigurations(ReadAll(*file));
}

std::vector<UplayInstallEntry> FindUplayInstalls() {
  std::vector<UplayInstallEntry> installs;
  for (const RegistryView view : {RegistryView::k32, RegistryView::k64}) {
    for (const std::string& name : EnumRegistrySubKeys(kUninstallKey, view)) {
      if (name.find("Uplay Install") == std::string::npos) continue;
      UplayInstallEntry entry = ReadInstall(name);
      if (entry.installLocation.empty() || entry.displayName.empty()) continue;
      entry.installLocation = TrimTrailingSeparators(entry.installLocation);
      installs.push_back(entry);
    }
  }
  return installs;
}

std::string BuildUplayExePath(const std::string& installLocation, const std::string& append,
                              const std::string& relative) {
  if (relative.empty()) return {};
  return CombinePath(CombinePath(installLocation, append), relative);
}

}  // namespace tarnwick
