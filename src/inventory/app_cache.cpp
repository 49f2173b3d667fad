// Edge: the Uninstall keys.
#include "inventory/app_cache.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/owner.h"
#include "inventory/shell_text.h"

#include <cwchar>
#include <exception>
#include <utility>

namespace tarnwick {
namespace {

constexpr wchar_t kUninstallKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

struct CacheScan {
  HKEY hive;
  REGSAM viewFlag;
  const char* name;
};

struct TextField {
  std::wstring AppRecord::* field;
  const wchar_t* valueName;
};

constexpr TextField kTextFields[] = {
    {&AppRecord::Publisher, L"Publisher"},           {&AppRecord::InstallLocation, L"InstallLocation"},
    {&AppRecord::DisplayIcon, L"DisplayIcon"},       {&AppRecord::UninstallString, L"UninstallString"},
    {&AppRecord::DisplayVersion, L"DisplayVersion"}, {&AppRecord::InstallDate, L"InstallDate"},
};

// Such as "HKLM 64bit".
std::string ScanName(HKEY hive, REGSAM viewFlag) {
  return std::string(hive == HKEY_LOCAL_MACHINE ? "HKLM" : "HKCU") +
         (viewFlag == KEY_WOW64_64KEY ? " 64bit" : " 32bit");
}

LONG OpenKey(HKEY parent, const wchar_t* name, REGSAM access, RegistryKey& key) {
  return RegOpenKeyExW(parent, name, 0, access, key.Receive());
}

LONG EnumerateKey(HKEY key, DWORD index, std::wstring& name) {
  constexpr DWORD kNameUnits = 512;
  wchar_t buffer[kNameUnits] = {};
  DWORD length = kNameUnits - 1;
  const LONG answer = RegEnumKeyExW(key, index, buffer, &length, nullptr, nullptr, nullptr, nullptr);
  name = buffer;
  return answer;
}

// Appends the application of one subkey. True if it describes one.
bool AppendSubkey(HKEY uninstall, const std::wstring& name, const ScanCalls& calls) {
  RegistryKey subkey;
  if (OpenKey(uninstall, name.c_str(), KEY_READ, subkey) != ERROR_SUCCESS || !subkey) return false;
  AppRecord record;
  if (!calls.readRecord(subkey.Get(), record)) return false;
  g_appCache.push_back(std::move(record));
  return true;
}

// As AppendSubkey; a failure costs this subkey alone.
bool AppendSubkeyCaught(HKEY uninstall, DWORD index, const std::wstring& name, const ScanCalls& calls) {
  constexpr DWORD kLoggedEvery = 50;
  try {
    if (index % kLoggedEvery == 0) {
      LogLine("ScanKey: Processing index " + std::to_string(index) + ", key=" + WideToUtf8(name));
    }
    return AppendSubkey(uninstall, name, calls);
  } catch (const std::exception& error) {
    LogLine("ScanKey ERROR at key [" + WideToUtf8(name) + "]: " + error.what());
  } catch (...) {
    LogLine("ScanKey UNKNOWN ERROR at key [" + WideToUtf8(name) + "]");
  }
  return false;
}

size_t AppendSubkeys(HKEY uninstall, const ScanCalls& calls) {
  size_t processed = 0;
  DWORD index = 0;
  std::wstring name;
  LONG answer = ERROR_SUCCESS;
  for (; (answer = calls.enumerateKey(uninstall, index, name)) == ERROR_SUCCESS; ++index) {
    if (AppendSubkeyCaught(uninstall, index, name, calls)) ++processed;
  }
  if (answer != ERROR_NO_MORE_ITEMS) {
    LogLine("ScanKey: RegEnumKeyExW failed at index " + std::to_string(index) +
            ", error=" + std::to_string(answer));
  }
  return processed;
}

void ScanKeyUncaught(HKEY hive, REGSAM viewFlag, const ScanCalls& calls) {
  const std::string name = ScanName(hive, viewFlag);
  LogLine("ScanKey START: " + name);
  size_t processed = 0;
  {
    RegistryKey uninstall;
    const LONG answer = OpenKey(hive, kUninstallKey, KEY_READ | viewFlag, uninstall);
    if (answer != ERROR_SUCCESS) {
      LogLine("ScanKey: Failed to open Uninstall key, error=" + std::to_string(answer));
      return;
    }
    processed = AppendSubkeys(uninstall.Get(), calls);
  }
  LogLine("ScanKey END: " + name + ", processed=" + std::to_string(processed));
}

void ScanForCache(const CacheScan& scan) {
  const std::string prefix = "RefreshCacheNoLock: ";
  LogLine(prefix + "Scanning " + scan.name + "...");
  ScanKey(scan.hive, scan.viewFlag);
  LogLine(prefix + scan.name + " done, cache size=" + std::to_string(g_appCache.size()));
}

}  // namespace

std::vector<AppRecord> g_appCache;

const ScanCalls kRegistryScanCalls = {EnumerateKey, ReadAppRecord};

std::wstring ReadRegString(HKEY key, const wchar_t* valueName) {
  constexpr DWORD kLargest = 0x100000;
  constexpr uint32_t kExpandedUnits = 4095;
  if (key == nullptr || valueName == nullptr) return {};
  DWORD type = 0;
  DWORD size = 0;
  if (RegQueryValueExW(key, valueName, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) return {};
  if (size < 1 || size > kLargest || (type != REG_SZ && type != REG_EXPAND_SZ)) return {};
  std::wstring text(size / 2 + 1, L'\0');
  if (RegQueryValueExW(key, valueName, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &size) !=
      ERROR_SUCCESS) {
    return {};
  }
  // A value may lack its terminator, or hold more behind it.
  text.resize(std::wcslen(text.c_str()));
  return type == REG_EXPAND_SZ && !text.empty() ? ExpandVariables(text, kExpandedUnits) : text;
}

int32_t ReadRegDword(HKEY key, const wchar_t* valueName) {
  int32_t value = 0;
  DWORD size = sizeof value;
  const LONG answer =
      RegQueryValueExW(key, valueName, nullptr, nullptr, reinterpret_cast<BYTE*>(&value), &size);
  return answer == ERROR_SUCCESS ? value : 0;
}

bool ReadAppRecord(HKEY key, AppRecord& record) {
  if (ReadRegDword(key, L"SystemComponent") == 1) return false;
  record.DisplayName = ReadRegString(key, L"DisplayName");
  if (record.DisplayName.empty()) return false;
  for (const TextField& text : kTextFields) record.*text.field = ReadRegString(key, text.valueName);
  record.EstimatedSize = ReadRegDword(key, L"EstimatedSize");
  return true;
}

void ScanKey(HKEY hive, REGSAM viewFlag, const ScanCalls& calls) {
  try {
    ScanKeyUncaught(hive, viewFlag, calls);
  } catch (const std::exception& error) {
    LogLine(std::string("Error in ScanKey: ") + error.what());
  } catch (...) {
    LogLine("Unknown error in ScanKey");
  }
}

void ScanKey(HKEY hive, REGSAM viewFlag) { ScanKey(hive, viewFlag, kRegistryScanCalls); }

void RefreshCacheNoLock() {
  constexpr size_t kUsualRecords = 200;
  LogLine("RefreshCacheNoLock START");
  g_appCache.clear();
  if (g_appCache.capacity() < kUsualRecords) g_appCache.reserve(kUsualRecords);
  // The user's keys have one view only that is read.
  const CacheScan scans[] = {{HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY, "HKLM 64bit"},
                             {HKEY_LOCAL_MACHINE, KEY_WOW64_32KEY, "HKLM 32bit"},
                             {HKEY_CURRENT_USER, KEY_WOW64_64KEY, "HKCU 64bit"}};
  for (const CacheScan& scan : scans) ScanForCache(scan);
  LogLine("RefreshCacheNoLock END, total apps=" + std::to_string(g_appCache.size()));
}

}  // namespace tarnwick
