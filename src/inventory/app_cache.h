#pragma once
// The process-wide list of installed applications, as the Uninstall keys describe them.
//
// In the order of discovery: the machine's keys in the 64-bit view, those in the 32-bit view, the user's
// keys. An application listed twice gives two records. Nothing expires: the list stands until the next
// refresh.

#include "foundation/machine/registry_keys.h"
#include "inventory/app_record.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {

// Guarded, records included, by g_cacheLock.
extern std::vector<AppRecord> g_appCache;

// Rebuilds the list from the registry, which drops every icon and folder found so far. The caller holds
// g_cacheLock; no lock is taken here.
void RefreshCacheNoLock();

// Appends the applications of one Uninstall key: of the machine or of the user, in the 64-bit or the 32-bit
// view. Reports failures to the log alone. The caller holds g_cacheLock.
void ScanKey(RegistryRoot hive, RegistryView view);

// The text of a REG_SZ or, expanded, REG_EXPAND_SZ value of up to one mebibyte, cut at its first zero. Empty
// for a key that isn't open, a null name, and for a value that is missing, larger or of another type.
std::wstring ReadRegString(const RegistryKey& key, const wchar_t* valueName);

// The first four bytes of a value, whatever its type; 0 for a value that is missing or longer.
int32_t ReadRegDword(const RegistryKey& key, const wchar_t* valueName);

// Reads one application. False if the key describes none: a system component, or without a display name.
bool ReadAppRecord(const RegistryKey& key, AppRecord& record);

// The calls that ScanKey makes, as data, so that a test can let each of them fail.
struct ScanCalls {
  SubkeyList (*listSubkeys)(const RegistryKey& key);
  bool (*readRecord)(const RegistryKey& key, AppRecord& record);
};
extern const ScanCalls kRegistryScanCalls;

void ScanKey(RegistryRoot hive, RegistryView view, const ScanCalls& calls);

}  // namespace tarnwick
