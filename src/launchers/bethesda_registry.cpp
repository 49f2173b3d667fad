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

namespace tarnwick {
namespace {

const std::string kPrefix = "[BethesdaRegistry]";
const std::string kUninstallUri = "bethesdanet://uninstall/";
const std::string kLauncherKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Bethesda Softworks\Bethesda.net)";

// A URI is its beginning and at least one digit. It may stand anywhere: launchers put their own path before it, or
// quotes around it.
bool HoldsUninstallUri(const std::string& text) {
  for (size_t at = text.find(kUninstallUri); at != std::string::npos; at = text.find(kUninstallUri, at + 1)) {
    const size_t digit = at + kUninstallUri.size();
    if (digit < text.size() && text[digit] >= '0' && text[digit] <= '9') return true;
  }
  return false;
}

bool IsLauncherRecord(const RegistryValues& record) {
  const auto uninstall = record.find("UninstallString");
  return uninstall != record.end() && HoldsUninstallUri(uninstall->second) &&
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
    for (const std::string& name : EnumRegistrySubKeys(kUninstallKey, RegistryView::k32)) {
      const RegistryValues record = EnumRegistryValues(UninstallRecordKey(name), RegistryView::k32);
      if (IsLauncherRecord(record)) AppendEntry(entries, UninstallRecordKey(name), record);
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
