#include "support/process_counters.h"

#include "foundation/windows_api.h"

#include <psapi.h>
#include <winternl.h>
#include <stdexcept>
#include <vector>

namespace tarnwick::tests {
namespace {

struct HandleRow {
  void* object;
  ULONG_PTR processId;
  ULONG_PTR handle;
  ULONG access;
  USHORT trace;
  USHORT type;
  ULONG attributes;
  ULONG reserved;
};

struct HandleTable {
  ULONG_PTR count;
  ULONG_PTR reserved;
  HandleRow rows[1];
};

size_t CountHandles() {
  using Query = LONG WINAPI(ULONG, void*, ULONG, ULONG*);
  constexpr ULONG kExtendedHandles = 64;
  constexpr LONG kLengthMismatch = static_cast<LONG>(0xC0000004);
  const FARPROC address = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation");
  const auto query = reinterpret_cast<Query*>(reinterpret_cast<void*>(address));
  std::vector<ULONG_PTR> buffer(1 << 16);
  LONG answer = kLengthMismatch;
  while ((answer = query(kExtendedHandles, buffer.data(),
                         static_cast<ULONG>(buffer.size() * sizeof buffer[0]), nullptr)) == kLengthMismatch) {
    buffer.resize(buffer.size() * 2);
  }
  if (answer != 0) throw std::runtime_error("the handles can't be listed");
  const auto* table = reinterpret_cast<const HandleTable*>(buffer.data());
  size_t own = 0;
  for (ULONG_PTR i = 0; i < table->count; ++i)
    own += table->rows[i].processId == GetCurrentProcessId() ? 1 : 0;
  return own;
}

// The table that every process sees, read-only; its address stands in the process's environment block.
size_t CountGdiObjects() {
  constexpr size_t kTableOffset = 0xF8;
  constexpr size_t kEntryBytes = 24;
  constexpr size_t kProcessOffset = 8;
  constexpr size_t kTypeOffset = 14;
  const auto* block = reinterpret_cast<const char*>(NtCurrentTeb()->ProcessEnvironmentBlock);
  const char* table = *reinterpret_cast<const char* const*>(block + kTableOffset);
  MEMORY_BASIC_INFORMATION region = {};
  if (table == nullptr || VirtualQuery(table, &region, sizeof region) == 0) return 0;
  const size_t entries = region.RegionSize / kEntryBytes;
  const auto own = static_cast<USHORT>(GetCurrentProcessId());
  size_t used = 0;
  for (size_t i = 0; i < entries; ++i) {
    const char* entry = table + i * kEntryBytes;
    const USHORT process = *reinterpret_cast<const USHORT*>(entry + kProcessOffset);
    if (entry[kTypeOffset] != 0 && (process == own || process == 0)) ++used;
  }
  return used;
}

size_t CommittedBytes() {
  PROCESS_MEMORY_COUNTERS counters = {};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
}

size_t CountFreeTlsSlots() {
  std::vector<DWORD> slots;
  for (DWORD slot; (slot = TlsAlloc()) != TLS_OUT_OF_INDEXES;) slots.push_back(slot);
  for (const DWORD slot : slots) TlsFree(slot);
  return slots.size();
}

}  // namespace

ProcessCounters ReadProcessCounters() {
  return {CountHandles(), CountGdiObjects(), CommittedBytes(), CountFreeTlsSlots()};
}

}  // namespace tarnwick::tests
