// Ten thousand icons leave the process as it was.
#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "inventory/icon_calls.h"
#include "inventory/icons.h"
#include "support/process_counters.h"

#include <gtest/gtest.h>
#include <vector>

namespace tarnwick {
namespace {

constexpr int kRounds = 10'000;
constexpr size_t kMebibyte = size_t{1} << 20;
const std::string kRoot = "C:\\TarnwickTest\\Inventory\\Leak\\";
const std::wstring kWideRoot = L"C:\\TarnwickTest\\Inventory\\Leak\\";

desktop::ExecutableOptions SmallIcon() {
  desktop::ExecutableOptions options;
  options.icons = {{{{32, 0x336699}}}};
  return options;
}

// Runs `call` to warm up, then many times, and compares.
template <class Call>
void ExpectNothingIsLeft(int rounds, Call call) {
  for (int i = 0; i < 20; ++i) call();
  const tests::ProcessCounters before = tests::ReadProcessCounters();
  for (int i = 0; i < rounds; ++i) call();
  const tests::ProcessCounters after = tests::ReadProcessCounters();
  EXPECT_LE(after.handles, before.handles);
  EXPECT_LE(after.gdiObjects, before.gdiObjects);
  EXPECT_LE(after.memory, before.memory + 4 * kMebibyte);
  EXPECT_GE(after.freeTlsSlots, before.freeTlsSlots);
}

AppRecord Record(const std::wstring& displayIcon, const std::wstring& location = {}) {
  AppRecord record;
  record.DisplayIcon = displayIcon;
  record.InstallLocation = location;
  return record;
}

TEST(IconLeaks, TheCountersSeeWhatLeaks) {
  const tests::ProcessCounters before = tests::ReadProcessCounters();
  ASSERT_GT(before.handles, 0u);
  ASSERT_GT(before.gdiObjects, 0u);
  ASSERT_GT(before.memory, 0u);
  ASSERT_GT(before.freeTlsSlots, 0u);
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const HDC device = CreateCompatibleDC(nullptr);
  const HICON icon = CopyIcon(LoadIconW(nullptr, IDI_APPLICATION));
  const DWORD slot = TlsAlloc();
  const std::vector<char> memory(16 * kMebibyte, 'x');
  const tests::ProcessCounters after = tests::ReadProcessCounters();
  EXPECT_GT(after.handles, before.handles);
  EXPECT_GT(after.gdiObjects, before.gdiObjects + 1);  // the device context, and the icon's bitmaps
  EXPECT_GT(after.memory, before.memory + 8 * kMebibyte);
  EXPECT_LT(after.freeTlsSlots, before.freeTlsSlots);
  TlsFree(slot);
  DestroyIcon(icon);
  DeleteDC(device);
  CloseHandle(event);
}

TEST(IconLeaks, TenThousandIconsOfAnExecutable) {
  desktop::Desktop d;
  d.Executable(kRoot + "a.exe", SmallIcon());
  ExpectNothingIsLeft(kRounds, [] {
    AppRecord record = Record(kWideRoot + L"a.exe,0");
    LoadAppIconLazy(record);
    ASSERT_FALSE(record.IconDataUri.empty());
  });
}

TEST(IconLeaks, EverySource) {
  desktop::Desktop d;
  d.Executable(kRoot + "a.exe", SmallIcon());
  d.Executable(kRoot + "plain.exe");
  d.IconFile(kRoot + "a.ico", SmallIcon().icons[0]);
  d.File(kRoot + "bad.ico", "no icon");
  d.Folder(kRoot + "Empty");
  for (const std::wstring name : {L"a.exe,-5", L"plain.exe", L"a.ico", L"bad.ico", L"missing.exe"}) {
    ExpectNothingIsLeft(100, [&] {
      AppRecord record = Record(kWideRoot + name);
      LoadAppIconLazy(record);
    });
  }
  ExpectNothingIsLeft(100, [] {
    AppRecord record = Record(L"", kWideRoot);
    LoadAppIconLazy(record);
  });
  ExpectNothingIsLeft(100, [] {
    AppRecord record = Record(L"", kWideRoot + L"Empty");
    LoadAppIconLazy(record);
  });
  // The later sources on their own, which the first ones hide.
  ExpectNothingIsLeft(100, [] {
    const std::wstring path = kWideRoot + L"a.exe";
    kWindowsIconCalls.systemImageList(path);
    kWindowsIconCalls.extractIconEx(path, 0);
    kWindowsIconCalls.shellIcon(path);
    kWindowsIconCalls.loadImage(kWideRoot + L"a.ico", 32);
  });
}

}  // namespace
}  // namespace tarnwick
