// Edge: entries of the Windows game explorer joined to the catalogue by their GUID.
#include "matching/gameux_registry_search.h"

#include "foundation/log.h"
#include "foundation/seh_guard.h"
#include "matching/found_report.h"
#include "matching/path_text.h"
#include "matching/registry.h"
#include "matching/signatures.h"

#include <cstdio>
#include <exception>

namespace tarnwick {
namespace {

constexpr char kPrefix[] = "[GameUXRegistrySearch]";

bool IsSystemsOwnGame(const std::string& configGdfBinaryPath) {
  return ContainsIgnoreCase(configGdfBinaryPath, "Program Files\\Microsoft Games");
}

// The name of the value whose path passes the executable test, or empty.
std::string FindPathField(const GameUxEntry& entry) {
  if (IsGameUxExecutable(entry.appExePath)) return "AppExePath";
  if (IsGameUxExecutable(entry.configGdfBinaryPath)) return "ConfigGDFBinaryPath";
  return {};
}

void AddSubkey(const std::string& key, GameUxEntries& entries) {
  GameUxEntry entry;
  entry.keyPath = key;
  entry.applicationId = ReadRegistryString(key, "ApplicationId", "");
  std::erase_if(entry.applicationId, [](char byte) { return byte == '{' || byte == '}'; });
  if (entry.applicationId.empty()) return;
  entry.appExePath = ReadRegistryString(key, "AppExePath", "");
  entry.configGdfBinaryPath = ReadRegistryString(key, "ConfigGDFBinaryPath", "");
  if (ReadRegistryString(key, "Title", "") == "Games for Windows Marketplace") return;
  if (IsSystemsOwnGame(entry.configGdfBinaryPath)) return;
  entry.pathField = FindPathField(entry);
  if (!entry.pathField.empty()) entries[entry.applicationId] = entry;
}

GameUxEntries ReadEntriesOrNone() {
  try {
    return ReadGameUxEntries();
  } catch (const std::exception& error) {
    LogStream() << kPrefix << " CRITICAL: Failed to get GameUX infos: " << error.what() << "\n";
  } catch (...) {
    LogStream() << kPrefix << " CRITICAL: Failed to get GameUX infos (Unknown error)\n";
  }
  return {};
}

void FindGame(const GameSignature& signature, const GameUxEntries& entries, ScanResults& results) {
  // Kept: case counts. The catalogue writes its GUIDs as the registry's are written
  // (docs/decisions/letter-case.md).
  const auto entry = entries.find(signature.GameGUID);
  if (entry == entries.end()) return;
  // The file may have gone since the list was read.
  const std::string exe = FindGameUxExecutable(entry->second);
  if (exe.empty()) return;
  ScanResult result;
  result.name = signature.DisplayName;
  result.exePath = exe;
  result.source = entry->second.keyPath;
  ReportFound(results, kPrefix, result);
}

}  // namespace

void GuardGameUxSubkey(const std::string& subkey, const std::function<void()>& read) {
  const uint32_t code = RunGuarded(read);
  if (code == 0) return;
  char text[512];
  std::snprintf(text, sizeof(text),
                "[GameUXRegistrySearch] SEH Error processing subkey: %s (Exception Code: 0x%08X)\n",
                subkey.c_str(), code);
  SendRawDebugText(text);
}

void ReadGameUxSubkey(const std::string& listKey, const std::string& subkey, GameUxEntries& entries) {
  try {
    AddSubkey(listKey + subkey, entries);
  } catch (...) {
    // A subkey that can't be read costs that subkey alone, and is not logged.
  }
}

GameUxEntries ReadGameUxEntries() {
  GameUxEntries entries;
  try {
    LogStream() << kPrefix << " Enumerating subkeys of: " << kGameUxListKey << "\n";
    const std::vector<std::string> subkeys = EnumRegistrySubKeys(kGameUxListKey, RegistryView::k32);
    LogStream() << kPrefix << " Found " << subkeys.size() << " subkeys.\n";
    for (const std::string& subkey : subkeys) {
      GuardGameUxSubkey(subkey, [&] { ReadGameUxSubkey(kGameUxListKey, subkey, entries); });
    }
  } catch (const std::exception& error) {
    LogStream() << kPrefix << " Error reading GameUX registry: " << error.what() << "\n";
  }
  return entries;
}

ScanResults ScanGameUxRegistry(const GameList& games) {
  LogStream() << kPrefix << " Starting GameUX Registry Search...\n";
  const GameUxEntries entries = ReadEntriesOrNone();
  LogStream() << kPrefix << " Got " << entries.size() << " GameUX entries.\n";
  ScanResults results;
  for (const GameSignature& signature : games) {
    if (!HasGameGuid(signature)) continue;
    GuardSignature("[GameUXRegistrySearch] ", signature, [&] { FindGame(signature, entries, results); });
  }
  ReportCompletion(results, kPrefix);
  return results;
}

}  // namespace tarnwick
