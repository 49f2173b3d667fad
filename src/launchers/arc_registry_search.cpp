// Edge: titles that the Arc launcher registered.
#include "launchers/arc_registry_search.h"

#include "foundation/log.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/registry_record.h"
#include "matching/found_report.h"
#include "matching/registry.h"
#include "matching/signature_index.h"

namespace tarnwick {
namespace {

const std::string kPrefix = "[ArcRegistrySearch]";
const std::string kCoreRoot = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Perfect World Entertainment\Core\)";

void AppendEntry(std::vector<ArcGameEntry>& entries, const std::string& name) {
  const RegistryValues record = EnumRegistryValues(kCoreRoot + name, RegistryView::k32);
  // Kept: InstallPath must be there, though nothing needs it afterwards (docs/decisions/launcher-records.md).
  if (!HasValues(record, {"Client", "InstallPath"})) return;
  const std::string client = FullPath(StripOuterQuotes(ValueOrEmpty(record, "Client")));
  if (!FileExists(client)) return;
  entries.push_back({name, client, StripOuterQuotes(ValueOrEmpty(record, "InstallPath")),
                     StripOuterQuotes(ValueOrEmpty(record, "Launcher")), kCoreRoot + name, "Client"});
}

ScanResult ResultOf(const ArcGameEntry& entry, const GameSignature* signature) {
  ScanResult result;
  // Kept: the signature's name counts even where it is empty (docs/decisions/launcher-records.md).
  result.name = signature == nullptr ? entry.subKeyName : signature->DisplayName;
  result.exePath = entry.clientPath;
  if (signature != nullptr) result.launchUrl = signature->LaunchUrl;
  result.source = "Arc: " + entry.registryKey;
  return result;
}

}  // namespace

std::vector<ArcGameEntry> GetArcGamesFromRegistry() {
  std::vector<ArcGameEntry> entries;
  LogExceptions(kPrefix + " Error reading Arc registry: ", [&] {
    for (const std::string& name : EnumRegistrySubKeys(kCoreRoot, RegistryView::k32))
      AppendEntry(entries, name);
  });
  return entries;
}

ScanResults ArcRegistrySearch(const GameList& games, const std::string&) {
  LogStream() << kPrefix << " Starting Arc Registry Search...\n";
  const std::vector<ArcGameEntry> entries = GetArcGamesFromRegistry();
  const SignatureIndex signatures = IndexSignatures(games, kSourceArc, &GameSignature::RegistryKey);
  ScanResults results;
  for (const ArcGameEntry& entry : entries) {
    if (!FileExists(entry.clientPath)) continue;
    ReportFound(results, kPrefix, ResultOf(entry, FindSignature(signatures, entry.registryKey)));
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
