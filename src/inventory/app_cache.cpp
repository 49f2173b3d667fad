// Edge: the Uninstall keys.
#include "inventory/app_cache.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/uninstall_key.h"
#include "foundation/registry_value_reader.h"

#include <cstring>
#include <cwchar>
#include <exception>
#include <optional>
#include <utility>

namespace tarnwick {
namespace {

struct CacheScan {
  RegistryRoot hive;
  RegistryView view;
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
std::string ScanName(RegistryRoot hive, RegistryView view) {
  return std::string(hive == RegistryRoot::kLocalMachine ? "HKLM" : "HKCU") +
         (view == RegistryView::k64 ? " 64bit" : " 32bit");
}

// Appends the application of one subkey. True if it describes one.
bool AppendSubkey(const RegistryKey& uninstall, const std::wstring& name, const ScanCalls& calls) {
  const RegistryKey subkey = OpenSubkey(uninstall, name);
  if (!subkey) return false;
  AppRecord record;
  if (!calls.readRecord(subkey, record)) return false;
  g_appCache.push_back(std::move(record));
  return true;
}

// As AppendSubkey; a failure costs this subkey alone.
bool AppendSubkeyCaught(const RegistryKey& uninstall, size_t index, const std::wstring& name,
                        const ScanCalls& calls) {
  constexpr size_t kLoggedEvery = 50;
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

size_t AppendSubkeys(const RegistryKey& uninstall, const ScanCalls& calls) {
  size_t processed = 0;
  const SubkeyList subkeys = calls.listSubkeys(uninstall);
  for (size_t i = 0; i < subkeys.names.size(); ++i) {
    if (AppendSubkeyCaught(uninstall, i, subkeys.names[i], calls)) ++processed;
  }
  if (subkeys.error != kNoMoreItems) {
    LogLine("ScanKey: RegEnumKeyExW failed at index " + std::to_string(subkeys.names.size()) +
            ", error=" + std::to_string(subkeys.error));
  }
  return processed;
}

void ScanKeyUncaught(RegistryRoot hive, RegistryView view, const ScanCalls& calls) {
  const std::string name = ScanName(hive, view);
  LogLine("ScanKey START: " + name);
  size_t processed = 0;
  {
    const RegistryKey uninstall = OpenKey(hive, Utf8ToWide(kUninstallSubkey), view);
    if (!uninstall) {
      LogLine("ScanKey: Failed to open Uninstall key, error=" + std::to_string(uninstall.error));
      return;
    }
    processed = AppendSubkeys(uninstall, calls);
  }
  LogLine("ScanKey END: " + name + ", processed=" + std::to_string(processed));
}

void ScanForCache(const CacheScan& scan) {
  const std::string prefix = "RefreshCacheNoLock: ";
  LogLine(prefix + "Scanning " + scan.name + "...");
  ScanKey(scan.hive, scan.view);
  LogLine(prefix + scan.name + " done, cache size=" + std::to_string(g_appCache.size()));
}

}  // namespace

std::vector<AppRecord> g_appCache;

const ScanCalls kRegistryScanCalls = {ListSubkeys, ReadAppRecord};

std::wstring ReadRegString(const RegistryKey& key, const wchar_t* valueName) {
  constexpr uint32_t kLargest = 0x100000;
  constexpr uint32_t kExpandedUnits = 4095;
  if (valueName == nullptr) return {};
  const std::optional<RegistryValue> value = ReadTextValue(key, valueName, kLargest);
  if (!value) return {};
  // Kept: unlike the strategies' texts, an odd last byte makes a unit of its own
  // (docs/decisions/registry-lookups.md).
  std::wstring text(value->bytes.size() / sizeof(wchar_t) + 1, L'\0');
  std::memcpy(text.data(), value->bytes.data(), value->bytes.size());
  // A value may lack its terminator, or hold more behind it.
  text.resize(std::wcslen(text.c_str()));
  const bool expands = value->type == kRegistryExpandableText && !text.empty();
  return expands ? ExpandVariables(text, kExpandedUnits) : text;
}

int32_t ReadRegDword(const RegistryKey& key, const wchar_t* valueName) {
  const std::optional<RegistryNumber> value = ReadNumberValue(key, valueName);
  return value ? static_cast<int32_t>(value->number) : 0;
}

bool ReadAppRecord(const RegistryKey& key, AppRecord& record) {
  if (ReadRegDword(key, L"SystemComponent") == 1) return false;
  record.DisplayName = ReadRegString(key, L"DisplayName");
  if (record.DisplayName.empty()) return false;
  for (const TextField& text : kTextFields) record.*text.field = ReadRegString(key, text.valueName);
  record.EstimatedSize = ReadRegDword(key, L"EstimatedSize");
  return true;
}

void ScanKey(RegistryRoot hive, RegistryView view, const ScanCalls& calls) {
  try {
    ScanKeyUncaught(hive, view, calls);
  } catch (const std::exception& error) {
    LogLine(std::string("Error in ScanKey: ") + error.what());
  } catch (...) {
    LogLine("Unknown error in ScanKey");
  }
}

void ScanKey(RegistryRoot hive, RegistryView view) { ScanKey(hive, view, kRegistryScanCalls); }

void RefreshCacheNoLock() {
  constexpr size_t kUsualRecords = 200;
  LogLine("RefreshCacheNoLock START");
  g_appCache.clear();
  if (g_appCache.capacity() < kUsualRecords) g_appCache.reserve(kUsualRecords);
  // The user's keys have one view only that is read.
  const CacheScan scans[] = {{RegistryRoot::kLocalMachine, RegistryView::k64, "HKLM 64bit"},
                             {RegistryRoot::kLocalMachine, RegistryView::k32, "HKLM 32bit"},
                             {RegistryRoot::kCurrentUser, RegistryView::k64, "HKCU 64bit"}};
  for (const CacheScan& scan : scans) ScanForCache(scan);
  LogLine("RefreshCacheNoLock END, total apps=" + std::to_string(g_appCache.size()));
}

}  // namespace tarnwick
