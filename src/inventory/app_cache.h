#pragma once
// The process-wide list of installed applications, as the Uninstall keys describe them.
//
// In the order of discovery: the machine's keys in the 64-bit view, those in the 32-bit view, the user's
// keys. An application listed twice gives two records. Nothing expires: the list stands until the next
// refresh.

#include "foundation/windows_api.h"
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

// Appends the applications of one Uninstall key: hive is HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER, viewFlag is
// KEY_WOW64_64KEY or KEY_WOW64_32KEY. Reports failures to the log alone. The caller holds g_cacheLock.
void ScanKey(HKEY hive, REGSAM viewFlag);

// The text of a REG_SZ or, expanded, REG_EXPAND_SZ value of up to one mebibyte, cut at its first zero. Empty
// for a null key or name, and for a value that is missing, larger or of another type.
std::wstring ReadRegString(HKEY key, const wchar_t* valueName);

// The first four bytes of a value, whatever its type; 0 for a value that is missing or longer.
int32_t ReadRegDword(HKEY key, const wchar_t* valueName);

// Reads one application. False if the key describes none: a system component, or without a display name.
bool ReadAppRecord(HKEY key, AppRecord& record);

// What ScanKey asks for, as data, so that a test can fail each of it.
struct ScanCalls {
  // RegEnumKeyExW: 0 and the subkey's name, or the error that ends the enumeration.
  LONG (*enumerateKey)(HKEY key, DWORD index, std::wstring& name);
  bool (*readRecord)(HKEY key, AppRecord& record);
};
extern const ScanCalls kRegistryScanCalls;

void ScanKey(HKEY hive, REGSAM viewFlag, const ScanCalls& calls);

}  // namespace tarnwick
