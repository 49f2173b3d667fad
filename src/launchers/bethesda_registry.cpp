// Edge: titles of the Bethesda.net launcher. Their Uninstall records are known by the URI in the uninstall
// string.
#include "launchers/bethesda_registry.h"

#include "foundation/log.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "launchers/registry_record.h"
#include "matching/found_report.h"
#include "matching/paths.h"
#include "matching/registry.h"
#include "matching/signature_index.h"

#include <exception>
#include <optional>
#include <regex>

namespace tarnwick {
namespace {

const std::string kPrefix = "[BethesdaRegistry]";
const std::string kLauncherKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Bethesda Softworks\Bethesda.net)";

bool IsLauncherRecord(const RegistryValues& record, const std::regex& uninstallUri) {
  const auto uninstall = record.find("UninstallString");
  // Unanchored: launchers put their own path before the URI, or quotes around it.
  return uninstall != record.end() && std::regex_search(uninstall->second, uninstallUri) &&
         HasValues(record, {"Path", "ProductID", "DisplayName"});
}

void AppendEntry(std::vector<BethesdaGameEntry>& entries, const std::string& key,
                 const RegistryValues& record) {
  const std::string path = FullPath(StripOuterQuotes(ValueOrEmpty(record, "Path")));
  if (!DirectoryExists(path)) return;
  entries.push_back({ValueOrEmpty(record, "ProductID"), ValueOrEmpty(record, "DisplayName"), path,
                     StripOuterQuotes(ValueOrEmpty(record, "DisplayIcon")), key, "Path"});
}

// Nothing for a title without a signature, or whose executable isn't there. Such titles are not logged: there
// are many.
std::optional<ScanResult> Resolve(const BethesdaGameEntry& entry, const SignatureIndex& signatures) {
  if (!ExistsOrThrow(entry.installPath)) return std::nullopt;
  const GameSignature* signature = FindSignature(signatures, BuildBethesdaRunUri(entry.productId));
  if (signature == nullptr || signature->DefaultExe.empty()) return std::nullopt;
  ScanResult result;
  result.exePath = CombinePath(entry.installPath, signature->DefaultExe);
  if (!FileExists(result.exePath)) return std::nullopt;
  result.name = signature->DisplayName.empty() ? entry.displayName : signature->DisplayName;
  result.launchUrl = signature->LaunchUrl;
  result.source = "Bethesda: " + entry.registryKey;
  return result;
}

}  // namespace

bool IsBethesdaLauncherInstalled() {
  try {
    const std::string folder = ReadRegistryString(kLauncherKey, "installLocation", "");
    return !folder.empty() && FileExists(CombinePath(folder, "BethesdaNetLauncher.exe"));
  } catch (const std::exception&) {
    return false;
  }
}

std::vector<BethesdaGameEntry> GetBethesdaGamesFromRegistry() {
  std::vector<BethesdaGameEntry> entries;
  LogExceptions(kPrefix + " Error reading Bethesda registry: ", [&] {
    const std::regex uninstallUri(R"(bethesdanet://uninstall/\d+)");
    for (const std::string& name : EnumRegistrySubKeys(kUninstallKey, RegistryView::k32)) {
      const RegistryValues record = EnumRegistryValues(UninstallRecordKey(name), RegistryView::k32);
      if (IsLauncherRecord(record, uninstallUri)) AppendEntry(entries, UninstallRecordKey(name), record);
    }
  });
  return entries;
}

std::string BuildBethesdaRunUri(const std::string& productId) { return "bethesdanet://run/" + productId; }

ScanResults BethesdaRegistrySearch(const GameList& games, const std::string&) {
  LogStream() << kPrefix << " Starting Bethesda Registry Search...\n";
  // Kept: neither of the two early ways out writes the completion line (docs/decisions/log-frames.md).
  if (!IsBethesdaLauncherInstalled()) {
    LogStream() << kPrefix << " Bethesda launcher not installed.\n";
    return {};
  }
  const std::vector<BethesdaGameEntry> entries = GetBethesdaGamesFromRegistry();
  if (entries.empty()) {
    LogStream() << kPrefix << " No Bethesda games found.\n";
    return {};
  }
  const SignatureIndex signatures = IndexSignatures(games, kSourceBethesda, &GameSignature::LaunchUrl);
  ScanResults results;
  for (const BethesdaGameEntry& entry : entries) {
    if (const auto result = Resolve(entry, signatures)) ReportFound(results, kPrefix, *result);
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
