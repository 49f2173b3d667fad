#include "inventory/app_cache.h"

#include "desktop/desktop.h"
#include "foundation/conversions.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/uninstall_key.h"
#include "support/utf16_bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <algorithm>
#include <stdexcept>

namespace tarnwick {
namespace {

using desktop::Desktop;
using desktop::View;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using tests::Utf16Bytes;

const std::string& kMachine = tests::kUninstallKey;
const std::string& kUser = tests::kUserUninstallKey;

// The cached applications whose names begin so, in their order.
std::vector<AppRecord> Cached(const std::wstring& prefix) {
  std::vector<AppRecord> records;
  for (const AppRecord& record : g_appCache) {
    if (record.DisplayName.starts_with(prefix)) records.push_back(record);
  }
  return records;
}

std::vector<std::wstring> CachedNames(const std::wstring& prefix) {
  std::vector<std::wstring> names;
  for (const AppRecord& record : Cached(prefix)) names.push_back(record.DisplayName);
  return names;
}

class AppCache : public testing::Test {
 protected:
  AppCache() { g_appCache.clear(); }
  ~AppCache() override { g_appCache.clear(); }

  Desktop d;
};

TEST_F(AppCache, EveryFieldComesFromItsValue) {
  const std::string key = kMachine + "TarnwickFields";
  d.String(key, "DisplayName", "Tarnwick Fields", View::k64);
  d.String(key, "Publisher", "A publisher", View::k64);
  d.String(key, "DisplayVersion", "1.2.3", View::k64);
  d.String(key, "InstallDate", "20240131", View::k64);
  d.String(key, "InstallLocation", "C:\\A", View::k64);
  d.String(key, "DisplayIcon", "C:\\A\\a.exe,0", View::k64);
  d.String(key, "UninstallString", "C:\\A\\unins.exe", View::k64);
  d.Dword(key, "EstimatedSize", 4711, View::k64);
  RefreshCacheNoLock();
  const std::vector<AppRecord> records = Cached(L"Tarnwick Fields");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].Publisher, L"A publisher");
  EXPECT_EQ(records[0].DisplayVersion, L"1.2.3");
  EXPECT_EQ(records[0].InstallDate, L"20240131");
  EXPECT_EQ(records[0].InstallLocation, L"C:\\A");
  EXPECT_EQ(records[0].DisplayIcon, L"C:\\A\\a.exe,0");
  EXPECT_EQ(records[0].UninstallString, L"C:\\A\\unins.exe");
  EXPECT_EQ(records[0].EstimatedSize, 4711);
  EXPECT_EQ(records[0].IconDataUri, L"");
  EXPECT_FALSE(records[0].IconLoaded);
}

TEST_F(AppCache, MissingValuesLeaveFieldsEmptyAndDropNoRecord) {
  d.String(kMachine + "TarnwickBare", "DisplayName", "Tarnwick Bare", View::k64);
  RefreshCacheNoLock();
  const std::vector<AppRecord> records = Cached(L"Tarnwick Bare");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].Publisher + records[0].DisplayVersion + records[0].InstallDate +
                records[0].InstallLocation + records[0].DisplayIcon + records[0].UninstallString,
            L"");
  EXPECT_EQ(records[0].EstimatedSize, 0);
}

TEST_F(AppCache, SystemComponentOneIsLeftOutWhateverItsName) {
  d.String(kMachine + "TarnwickSys", "DisplayName", "Tarnwick System", View::k64);
  d.Dword(kMachine + "TarnwickSys", "SystemComponent", 1, View::k64);
  RefreshCacheNoLock();
  EXPECT_THAT(Cached(L"Tarnwick System"), testing::IsEmpty());
}

TEST_F(AppCache, OtherValuesOfSystemComponentLetThrough) {
  for (const uint32_t value : {0u, 2u, 0xFFFFFFFFu}) {
    Desktop inner;
    inner.String(kMachine + "TarnwickSys", "DisplayName", "Tarnwick System", View::k64);
    inner.Dword(kMachine + "TarnwickSys", "SystemComponent", value, View::k64);
    RefreshCacheNoLock();
    EXPECT_EQ(Cached(L"Tarnwick System").size(), 1u) << value;
  }
}

TEST_F(AppCache, TheTypeOfADwordIsNotLookedAt) {
  d.String(kMachine + "TarnwickSys", "DisplayName", "Tarnwick System", View::k64);
  d.Binary(kMachine + "TarnwickSys", "SystemComponent", std::string("\1\0\0\0", 4), View::k64);
  d.String(kMachine + "TarnwickWide", "DisplayName", "Tarnwick Wide", View::k64);
  d.Qword(kMachine + "TarnwickWide", "SystemComponent", 1, View::k64);  // too long to be read
  RefreshCacheNoLock();
  EXPECT_THAT(Cached(L"Tarnwick System"), testing::IsEmpty());
  EXPECT_EQ(Cached(L"Tarnwick Wide").size(), 1u);
}

TEST_F(AppCache, ASubkeyWithoutDisplayNameIsNoApplicationAndDoesNotCount) {
  const tests::DebugCapture capture;
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64);
  const size_t before = g_appCache.size();
  d.String(kMachine + "TarnwickNone", "Publisher", "Tarnwick", View::k64);
  d.String(kMachine + "TarnwickEmpty", "DisplayName", "", View::k64);
  d.String(kMachine + "TarnwickOne", "DisplayName", "Tarnwick One", View::k64);
  g_appCache.clear();
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64);
  EXPECT_EQ(g_appCache.size(), before + 1);
  EXPECT_EQ(capture.Lines().back(), "ScanKey END: HKLM 64bit, processed=" + std::to_string(before + 1));
}

TEST_F(AppCache, BothViewsAndBothHivesGiveRecordsOfTheirOwnInThisOrder) {
  d.String(kUser + "TarnwickTwice", "DisplayName", "Tarnwick 3 user", View::k64);
  d.String(kMachine + "TarnwickTwice", "DisplayName", "Tarnwick 2 thirty-two", View::k32);
  d.String(kMachine + "TarnwickTwice", "DisplayName", "Tarnwick 1 sixty-four", View::k64);
  RefreshCacheNoLock();
  EXPECT_THAT(CachedNames(L"Tarnwick"),
              ElementsAre(L"Tarnwick 1 sixty-four", L"Tarnwick 2 thirty-two", L"Tarnwick 3 user"));
}

TEST_F(AppCache, TheSameApplicationInBothViewsIsListedTwice) {
  for (const View view : {View::k64, View::k32})
    d.String(kMachine + "TarnwickTwin", "DisplayName", "Tarnwick Twin", view);
  RefreshCacheNoLock();
  EXPECT_EQ(Cached(L"Tarnwick Twin").size(), 2u);
}

TEST_F(AppCache, ARefreshDropsWhatIsGoneAndWhatWasFoundOut) {
  {
    Desktop inner;
    inner.String(kMachine + "TarnwickGone", "DisplayName", "Tarnwick Gone", View::k64);
    RefreshCacheNoLock();
    EXPECT_EQ(Cached(L"Tarnwick Gone").size(), 1u);
  }
  d.String(kMachine + "TarnwickStays", "DisplayName", "Tarnwick Stays", View::k64);
  RefreshCacheNoLock();
  for (AppRecord& record : g_appCache) record.IconLoaded = true;
  RefreshCacheNoLock();
  EXPECT_THAT(CachedNames(L"Tarnwick"), ElementsAre(L"Tarnwick Stays"));
  EXPECT_FALSE(Cached(L"Tarnwick")[0].IconLoaded);
}

TEST_F(AppCache, RoomForTwoHundredIsMadeAtOnce) {
  g_appCache = {};
  RefreshCacheNoLock();
  EXPECT_GE(g_appCache.capacity(), 200u);
}

TEST_F(AppCache, NamesInOtherLanguagesAndKeysOf255CharactersAreRead) {
  const std::string name = "Tarnwick \xd0\x98\xd0\xb3\xd1\x80\xd0\xb0 \xe6\xb8\xb8\xe6\x88\x8f \xc3\xa9";
  d.String(kMachine + std::string(255, 'K'), "DisplayName", name, View::k64);
  d.String(kMachine + "\xe6\xb8\xb8\xe6\x88\x8f", "DisplayName", "Tarnwick key", View::k64);
  RefreshCacheNoLock();
  EXPECT_THAT(CachedNames(L"Tarnwick"), testing::UnorderedElementsAre(Utf8ToWide(name), L"Tarnwick key"));
}

TEST_F(AppCache, TheLogOfARefreshWholeAndInOrder) {
  d.String(kMachine + "TarnwickOne", "DisplayName", "Tarnwick One", View::k64);
  d.String(kMachine + "TarnwickTwo", "DisplayName", "Tarnwick Two", View::k32);
  d.String(kUser + "TarnwickThree", "DisplayName", "Tarnwick Three", View::k64);
  const tests::DebugCapture capture;
  RefreshCacheNoLock();
  // Only the subkeys' own lines depend on what else the machine has.
  std::vector<std::string> lines = capture.Lines();
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("ScanKey: Processing"); });
  ASSERT_EQ(lines.size(), 14u);
  const auto number = [&](size_t line) { return std::stoul(lines[line].substr(lines[line].rfind('=') + 1)); };
  const size_t sixtyFour = number(3), thirtyTwo = number(7), user = number(11);
  EXPECT_THAT(
      lines,
      ElementsAre(
          "RefreshCacheNoLock START", "RefreshCacheNoLock: Scanning HKLM 64bit...",
          "ScanKey START: HKLM 64bit", "ScanKey END: HKLM 64bit, processed=" + std::to_string(sixtyFour),
          "RefreshCacheNoLock: HKLM 64bit done, cache size=" + std::to_string(sixtyFour),
          "RefreshCacheNoLock: Scanning HKLM 32bit...", "ScanKey START: HKLM 32bit",
          "ScanKey END: HKLM 32bit, processed=" + std::to_string(thirtyTwo),
          "RefreshCacheNoLock: HKLM 32bit done, cache size=" + std::to_string(sixtyFour + thirtyTwo),
          "RefreshCacheNoLock: Scanning HKCU 64bit...", "ScanKey START: HKCU 64bit",
          "ScanKey END: HKCU 64bit, processed=" + std::to_string(user),
          "RefreshCacheNoLock: HKCU 64bit done, cache size=" + std::to_string(sixtyFour + thirtyTwo + user),
          "RefreshCacheNoLock END, total apps=" + std::to_string(g_appCache.size())));
  EXPECT_EQ(g_appCache.size(), sixtyFour + thirtyTwo + user);
}

TEST_F(AppCache, AKeyThatCantBeOpenedIsLoggedAndLeavesTheOthersTheirs) {
  const tests::DebugCapture capture;
  // No hive but the two has such a key.
  ScanKey(RegistryRoot::kUsers, RegistryView::k32);
  EXPECT_THAT(capture.Lines(),
              ElementsAre("ScanKey START: HKCU 32bit", "ScanKey: Failed to open Uninstall key, error=2"));
}

TEST_F(AppCache, EveryFiftiethSubkeyIsLogged) {
  for (int i = 0; i < 120; ++i) {
    d.String(kMachine + "Tarnwick" + std::to_string(1000 + i), "DisplayName", "Tarnwick", View::k64);
  }
  const tests::DebugCapture capture;
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64);
  const RegistryKey uninstall =
      OpenKey(RegistryRoot::kLocalMachine, Utf8ToWide(tests::kUninstallPath), RegistryView::k64);
  ASSERT_TRUE(uninstall);
  const std::vector<std::wstring> names = kRegistryScanCalls.listSubkeys(uninstall).names;
  std::vector<std::string> expected;
  for (size_t i = 0; i < names.size(); i += 50) {
    expected.push_back("ScanKey: Processing index " + std::to_string(i) + ", key=" + WideToUtf8(names[i]));
  }
  ASSERT_GE(expected.size(), 3u);
  EXPECT_EQ(capture.LinesWith("ScanKey: Processing"), expected);
}

// --- Failures, with the registry played by the test. ---

SubkeyList ThreeSubkeys(const RegistryKey&) {
  return {std::vector<std::wstring>(3, L"TarnwickThree"), kNoMoreItems};
}

class AppCacheFailures : public AppCache {
 protected:
  AppCacheFailures() {
    d.String(kMachine + "TarnwickThree", "DisplayName", "Tarnwick Three", View::k64);
    reads = 0;
  }
  static inline int reads = 0;
  const tests::DebugCapture capture;
};

TEST_F(AppCacheFailures, AnErrorInOneSubkeyCostsThatOneAlone) {
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64,
          {ThreeSubkeys, [](const RegistryKey& key, AppRecord& record) {
             if (++reads == 2) throw std::runtime_error("no luck");
             return ReadAppRecord(key, record);
           }});
  EXPECT_THAT(
      capture.Lines(),
      ElementsAre("ScanKey START: HKLM 64bit", "ScanKey: Processing index 0, key=TarnwickThree",
                  "ScanKey ERROR at key [TarnwickThree]: no luck", "ScanKey END: HKLM 64bit, processed=2"));
  EXPECT_EQ(g_appCache.size(), 2u);
}

TEST_F(AppCacheFailures, AnUnknownErrorInOneSubkeyToo) {
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64,
          {ThreeSubkeys, [](const RegistryKey& key, AppRecord& record) {
             if (++reads == 3) throw 1;
             return ReadAppRecord(key, record);
           }});
  EXPECT_THAT(
      capture.Lines(),
      ElementsAre("ScanKey START: HKLM 64bit", "ScanKey: Processing index 0, key=TarnwickThree",
                  "ScanKey UNKNOWN ERROR at key [TarnwickThree]", "ScanKey END: HKLM 64bit, processed=2"));
}

TEST_F(AppCacheFailures, AnErrorAroundTheScanEndsThatScanOnly) {
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64, {ThreeSubkeys, ReadAppRecord});
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64,
          {[](const RegistryKey&) -> SubkeyList { throw std::runtime_error("enumeration broke"); },
           ReadAppRecord});
  EXPECT_EQ(capture.Lines().back(), "Error in ScanKey: enumeration broke");
  EXPECT_EQ(g_appCache.size(), 3u);
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64,
          {[](const RegistryKey&) -> SubkeyList { throw 1; }, ReadAppRecord});
  EXPECT_EQ(capture.Lines().back(), "Unknown error in ScanKey");
}

TEST_F(AppCacheFailures, AnEnumerationThatEndsBadlyIsLogged) {
  const auto ending = [](const RegistryKey&) {
    return SubkeyList{{L"TarnwickThree", L"TarnwickThree"}, ERROR_MORE_DATA};
  };
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64, {ending, ReadAppRecord});
  EXPECT_THAT(capture.Lines(),
              ElementsAre("ScanKey START: HKLM 64bit", "ScanKey: Processing index 0, key=TarnwickThree",
                          "ScanKey: RegEnumKeyExW failed at index 2, error=234",
                          "ScanKey END: HKLM 64bit, processed=2"));
}

TEST_F(AppCacheFailures, ASubkeyThatCantBeOpenedIsPassedOver) {
  const auto missing = [](const RegistryKey&) {
    return SubkeyList{{L"TarnwickNotThere", L"TarnwickThree"}, kNoMoreItems};
  };
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64, {missing, ReadAppRecord});
  EXPECT_EQ(capture.Lines().back(), "ScanKey END: HKLM 64bit, processed=1");
}

TEST_F(AppCacheFailures, TheFiftyFirstSubkeyIsLoggedAndTheFiftiethIsNot) {
  const auto many = [](const RegistryKey&) {
    SubkeyList list{{}, kNoMoreItems};
    for (int i = 0; i < 51; ++i) list.names.push_back(L"k" + std::to_wstring(i));
    return list;
  };
  ScanKey(RegistryRoot::kLocalMachine, RegistryView::k64, {many, ReadAppRecord});
  EXPECT_THAT(capture.LinesWith("ScanKey: Processing"),
              ElementsAre("ScanKey: Processing index 0, key=k0", "ScanKey: Processing index 50, key=k50"));
}

// --- Values. ---

class RegistryValueTexts : public testing::Test {
 protected:
  // The value "v" of a key of this test's own.
  std::wstring Text() { return ReadRegString(Opened(), L"v"); }
  int32_t Number() { return ReadRegDword(Opened(), L"v"); }
  static RegistryKey Opened() {
    return OpenKey(RegistryRoot::kCurrentUser, L"Software\\TarnwickValues", RegistryView::kNative);
  }
  void Set(uint32_t type, const std::string& bytes) {
    d.RawValue("HKEY_CURRENT_USER\\Software\\TarnwickValues", "v", type, bytes);
  }

  Desktop d;
};

TEST_F(RegistryValueTexts, NullKeysAndNamesGiveNothing) {
  const RegistryKey root = OpenKey(RegistryRoot::kCurrentUser, L"", RegistryView::kNative);
  ASSERT_TRUE(root);
  EXPECT_EQ(ReadRegString({}, L"v"), L"");
  EXPECT_EQ(ReadRegDword({}, L"v"), 0);
  EXPECT_EQ(ReadRegString(root, nullptr), L"");
  EXPECT_EQ(ReadRegString(root, L"TarnwickNoSuchValue"), L"");
  EXPECT_EQ(ReadRegDword(root, L"TarnwickNoSuchValue"), 0);
}

TEST_F(RegistryValueTexts, TextsAreCutAtTheirFirstZeroAndNeedNone) {
  Set(REG_SZ, Utf16Bytes(std::wstring(L"abc\0", 4)));
  EXPECT_EQ(Text(), L"abc");
  Set(REG_SZ, Utf16Bytes(L"abc"));
  EXPECT_EQ(Text(), L"abc");
  Set(REG_SZ, Utf16Bytes(std::wstring(L"ab\0cd\0", 6)));
  EXPECT_EQ(Text(), L"ab");
  Set(REG_SZ, Utf16Bytes(std::wstring(L"\0ab\0", 4)));
  EXPECT_EQ(Text(), L"");
  Set(REG_SZ, "");
  EXPECT_EQ(Text(), L"");
}

TEST_F(RegistryValueTexts, AnOddByteBecomesACharacterOfItsOwn) {
  Set(REG_SZ, Utf16Bytes(L"ab") + "c");
  EXPECT_EQ(Text(), L"abc");
}

TEST_F(RegistryValueTexts, OnlyTheTwoTextTypesAreTaken) {
  const std::vector<uint32_t> others = {REG_BINARY, REG_DWORD, REG_MULTI_SZ, REG_NONE, REG_LINK, REG_QWORD};
  for (const uint32_t type : others) {
    Set(type, Utf16Bytes(std::wstring(L"abc\0", 4)));
    EXPECT_EQ(Text(), L"") << type;
  }
}

TEST_F(RegistryValueTexts, ExpandableTextsAreExpandedAndPlainOnesAreNot) {
  SetEnvironmentVariableW(L"TARNWICK_VALUE", L"C:\\X");
  Set(REG_EXPAND_SZ, Utf16Bytes(L"%TARNWICK_VALUE%\\a"));
  EXPECT_EQ(Text(), L"C:\\X\\a");
  Set(REG_SZ, Utf16Bytes(L"%TARNWICK_VALUE%\\a"));
  EXPECT_EQ(Text(), L"%TARNWICK_VALUE%\\a");
  SetEnvironmentVariableW(L"TARNWICK_VALUE", nullptr);
}

TEST_F(RegistryValueTexts, AnExpansionIsTakenIfItFits4095CharactersWithItsZero) {
  SetEnvironmentVariableW(L"TARNWICK_VALUE", std::wstring(4094, L'x').c_str());
  Set(REG_EXPAND_SZ, Utf16Bytes(L"%TARNWICK_VALUE%"));
  EXPECT_EQ(Text(), std::wstring(4094, L'x'));
  SetEnvironmentVariableW(L"TARNWICK_VALUE", std::wstring(4095, L'x').c_str());
  EXPECT_EQ(Text(), L"%TARNWICK_VALUE%");
  SetEnvironmentVariableW(L"TARNWICK_VALUE", nullptr);
}

TEST_F(RegistryValueTexts, OneMebibyteIsReadAndMoreIsNot) {
  // With its terminator, which the system may add where it is missing.
  const std::wstring text(0x100000 / 2 - 1, L'x');
  Set(REG_SZ, Utf16Bytes(text + L'\0'));
  EXPECT_EQ(Text(), text);
  Set(REG_SZ, Utf16Bytes(text + L'x' + L'\0'));
  EXPECT_EQ(Text(), L"");
}

TEST_F(RegistryValueTexts, NumbersOfAnyTypeUpToFourBytesAreRead) {
  Set(REG_DWORD, std::string("\x78\x56\x34\x12", 4));
  EXPECT_EQ(Number(), 0x12345678);
  Set(REG_BINARY, std::string("\x78\x56", 2));
  EXPECT_EQ(Number(), 0x5678);
  Set(REG_DWORD, "\xff\xff\xff\xff");
  EXPECT_EQ(Number(), -1);
  Set(REG_QWORD, std::string("\1\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(Number(), 0);
}

TEST_F(AppCache, InstallLocationExpandableIsExpandedAndBinaryIsEmpty) {
  d.String(kMachine + "TarnwickA", "DisplayName", "Tarnwick A", View::k64);
  d.ExpandString(kMachine + "TarnwickA", "InstallLocation", "%SystemDrive%\\Foo", View::k64);
  d.String(kMachine + "TarnwickB", "DisplayName", "Tarnwick B", View::k64);
  d.Binary(kMachine + "TarnwickB", "InstallLocation", "C:\\Foo", View::k64);
  RefreshCacheNoLock();
  const std::vector<AppRecord> records = Cached(L"Tarnwick");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].InstallLocation, L"C:\\Foo");
  EXPECT_EQ(records[1].InstallLocation, L"");
}

}  // namespace
}  // namespace tarnwick
