// Edge: every entry of the Windows game explorer whose executable exists.
#include "matching/gameux_info_search.h"

#include "foundation/log.h"
#include "matching/found_report.h"
#include "matching/registry.h"

#include <exception>

namespace tarnwick {
namespace {

constexpr char kPrefix[] = "[GameUXInfoSearch]";

void AddSubkey(const std::string& subkey, GameUxEntries& entries) {
  if (subkey.empty()) return;
  GameUxEntry entry;
  entry.keyPath = kGameUxListKey + subkey;
  entry.applicationId = subkey;
  const RegistryValues values = EnumRegistryValues(entry.keyPath, RegistryView::k32);
  entry.appExePath = ValueOrEmpty(values, "AppExePath");
  // Kept: found by this exact name alone. An entry that spells it "ConfigGDFBinaryPath" has none here
  // (docs/decisions/letter-case.md).
  entry.configGdfBinaryPath = ValueOrEmpty(values, "ConfigGdfBinaryPath");
  entries[subkey] = entry;
}

}  // namespace

GameUxEntries ReadGameUxInfoEntries() {
  GameUxEntries entries;
  try {
    for (const std::string& subkey : EnumRegistrySubKeys(kGameUxListKey, RegistryView::k32))
      AddSubkey(subkey, entries);
  } catch (const std::exception& error) {
    LogStream() << kPrefix << " Error reading GameUX registry: " << error.what() << "\n";
  }
  return entries;
}

ScanResults ScanGameUxInfo() {
  LogStream() << kPrefix << " Starting GameUX Info Search...\n";
  ScanResults results;
  for (const auto& [id, entry] : ReadGameUxInfoEntries()) {
    const std::string exe = FindGameUxExecutable(entry);
    if (exe.empty()) continue;
    ScanResult result;
    result.name = entry.applicationId;
    result.exePath = exe;
    result.source = "GameUX Info: " + entry.applicationId;
    ReportFound(results, kPrefix, result);
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
