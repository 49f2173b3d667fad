#include "desktop/desktop.h"

#include "common/wide_text.h"
#include "desktop/journal.h"
#include "desktop/windows_calls.h"
#include "foundation/owner.h"
#include "support/file_bytes.h"
#include "support/process.h"
#include "support/registry_value.h"
#include "support/utf16_bytes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <winver.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tarnwick::desktop {
namespace {

using common::Narrow;
using common::Wide;
using tests::PathExists;
using tests::ReadBytes;
using tests::ReadRegistryValue;
using tests::RegistryKeyExists;
using tests::RegistryValue;

const std::string kFolder = R"(C:\TarnwickTest\Desktop)";
const std::string kKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\TarnwickDesktopTest)";

std::string Terminated(const std::wstring& text) { return tests::Utf16Bytes(text + L'\0'); }

TEST(Desktop, RefusesAMachineThatIsNotThrowaway) {
  _putenv("TARNWICK_THROWAWAY_MACHINE=0");
  EXPECT_THROW(Desktop(), std::runtime_error);
  _putenv("TARNWICK_THROWAWAY_MACHINE=");
  EXPECT_THROW(Desktop(), std::runtime_error);
  _putenv("TARNWICK_THROWAWAY_MACHINE=1");
  EXPECT_NO_THROW(Desktop());
}

TEST(Desktop, MakesFilesWithTheirFoldersAndTakesThemAway) {
  const std::string file = kFolder + R"(\Игры\游戏\été\a.txt)";
  {
    Desktop desktop;
    desktop.File(file, "one\r\ntwo");
    EXPECT_EQ(ReadBytes(file), "one\r\ntwo");
    desktop.Folder(kFolder + R"(\Empty)");
    EXPECT_TRUE(PathExists(kFolder + R"(\Empty)"));
  }
  EXPECT_FALSE(PathExists(kFolder));
}

TEST(Desktop, LeavesFoldersAndForeignFilesThatStoodThereOrCame) {
  std::filesystem::create_directories(Wide(kFolder + R"(\Old)"));
  {
    Desktop desktop;
    desktop.File(kFolder + R"(\Old\New\a.txt)");
    desktop.Folder(kFolder + R"(\Old\Shared)");
    std::ofstream(std::filesystem::path(LongPath(kFolder + R"(\Old\Shared\foreign.txt)"))) << "x";
  }
  EXPECT_TRUE(PathExists(kFolder + R"(\Old)"));
  EXPECT_FALSE(PathExists(kFolder + R"(\Old\New)"));
  EXPECT_TRUE(PathExists(kFolder + R"(\Old\Shared\foreign.txt)"));
  std::filesystem::remove_all(Wide(kFolder));
}

TEST(Desktop, GivesAnOverwrittenFileItsOldContentBack) {
  Desktop outer;
  outer.File(kFolder + R"(\a.txt)", "old");
  {
    Desktop inner;
    inner.File(kFolder + R"(\a.txt)", "new");
    inner.File(kFolder + R"(\a.txt)", "newer");
    EXPECT_EQ(ReadBytes(kFolder + R"(\a.txt)"), "newer");
  }
  EXPECT_EQ(ReadBytes(kFolder + R"(\a.txt)"), "old");
}

TEST(Desktop, MakesPathsLongerThanTheOldLimit) {
  std::string folder = kFolder;
  for (int level = 0; level < 12; ++level) folder += R"(\a folder with a name of some length)";
  ASSERT_GT(folder.size(), 400u);
  {
    Desktop desktop;
    desktop.Executable(folder + R"(\game.exe)");
    EXPECT_TRUE(PathExists(folder + R"(\game.exe)"));
  }
  EXPECT_FALSE(PathExists(kFolder));
}

TEST(Desktop, MakesSparseFilesBeyondFourGigabytes) {
  Desktop desktop;
  desktop.SparseFile(kFolder + R"(\big.bin)", 5'000'000'000ull);
  EXPECT_EQ(std::filesystem::file_size(LongPath(kFolder + R"(\big.bin)")), 5'000'000'000ull);
}

uint64_t WrittenAt(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  EXPECT_TRUE(GetFileAttributesExW(LongPath(path).c_str(), GetFileExInfoStandard, &data));
  return (static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) |
         data.ftLastWriteTime.dwLowDateTime;
}

TEST(Desktop, SetsTimesOfFilesAndFolders) {
  Desktop desktop;
  desktop.File(kFolder + R"(\a.txt)");
  desktop.ModifiedTime(kFolder + R"(\a.txt)", 1'600'000'000);
  desktop.ModifiedTime(kFolder, 1'500'000'000);
  EXPECT_EQ(WrittenAt(kFolder + R"(\a.txt)"), (1'600'000'000ull + 11'644'473'600ull) * 10'000'000);
  EXPECT_EQ(WrittenAt(kFolder), (1'500'000'000ull + 11'644'473'600ull) * 10'000'000);
  {
    Desktop inner;
    inner.ModifiedTime(kFolder + R"(\a.txt)", 1'700'000'000);
  }
  EXPECT_EQ(WrittenAt(kFolder + R"(\a.txt)"), (1'600'000'000ull + 11'644'473'600ull) * 10'000'000);
}

TEST(Desktop, MakesJunctionsThatLeadOn) {
  {
    Desktop desktop;
    desktop.File(kFolder + R"(\Target\a.txt)", "here");
    {
      Desktop inner;
      inner.Junction(kFolder + R"(\Link)", kFolder + R"(\Target)");
      EXPECT_EQ(ReadBytes(kFolder + R"(\Link\a.txt)"), "here");
      EXPECT_NE(GetFileAttributesW(LongPath(kFolder + R"(\Link)").c_str()) & FILE_ATTRIBUTE_REPARSE_POINT,
                0u);
      // A loop is what the walks of the library must survive.
      inner.Junction(kFolder + R"(\Target\Loop)", kFolder + R"(\Target)");
      EXPECT_EQ(ReadBytes(kFolder + R"(\Target\Loop\Loop\a.txt)"), "here");
    }
    EXPECT_FALSE(PathExists(kFolder + R"(\Link)"));
    EXPECT_EQ(ReadBytes(kFolder + R"(\Target\a.txt)"), "here");
  }
  EXPECT_FALSE(PathExists(kFolder));
}

TEST(Desktop, WritesEveryTypeOfValue) {
  Desktop desktop;
  desktop.String(kKey, "Text", "Игра 游戏");
  desktop.String(kKey, "", "default");
  desktop.ExpandString(kKey, "Expand", "%PATH%");
  desktop.MultiString(kKey, "Multi", {"a", "b"});
  desktop.Dword(kKey, "Dword", 0x01020304);
  desktop.Qword(kKey, "Qword", 0x0102030405060708);
  desktop.Binary(kKey, "Binary", std::string_view("\0\1\2", 3));
  desktop.Binary(kKey, "Nothing", {});
  desktop.RawValue(kKey, "Odd", REG_SZ, "abc");
  EXPECT_EQ(ReadRegistryValue(kKey, "Text"), (RegistryValue{REG_SZ, Terminated(L"Игра 游戏")}));
  EXPECT_EQ(ReadRegistryValue(kKey, ""), (RegistryValue{REG_SZ, Terminated(L"default")}));
  EXPECT_EQ(ReadRegistryValue(kKey, "Expand"), (RegistryValue{REG_EXPAND_SZ, Terminated(L"%PATH%")}));
  EXPECT_EQ(ReadRegistryValue(kKey, "Multi"),
            (RegistryValue{REG_MULTI_SZ, Terminated(std::wstring(L"a\0b\0", 4))}));
  EXPECT_EQ(ReadRegistryValue(kKey, "Dword"), (RegistryValue{REG_DWORD, "\4\3\2\1"}));
  EXPECT_EQ(ReadRegistryValue(kKey, "Qword"), (RegistryValue{REG_QWORD, "\x8\7\6\5\4\3\2\1"}));
  EXPECT_EQ(ReadRegistryValue(kKey, "Binary"), (RegistryValue{REG_BINARY, std::string("\0\1\2", 3)}));
  EXPECT_EQ(ReadRegistryValue(kKey, "Nothing"), (RegistryValue{REG_BINARY, ""}));
  ASSERT_TRUE(ReadRegistryValue(kKey, "Odd"));
  EXPECT_EQ(ReadRegistryValue(kKey, "Odd")->bytes.substr(0, 3), "abc");
}

TEST(Desktop, WritesBothViewsOfTheRegistry) {
  {
    Desktop desktop;
    desktop.Dword(kKey, "Which", 32, View::k32);
    EXPECT_FALSE(RegistryKeyExists(kKey, KEY_WOW64_64KEY));
    desktop.Dword(kKey, "Which", 64, View::k64);
    EXPECT_EQ(ReadRegistryValue(kKey, "Which", KEY_WOW64_32KEY),
              (RegistryValue{REG_DWORD, std::string("\x20\0\0\0", 4)}));
    EXPECT_EQ(ReadRegistryValue(kKey, "Which", KEY_WOW64_64KEY),
              (RegistryValue{REG_DWORD, std::string("\x40\0\0\0", 4)}));
    EXPECT_EQ(ReadRegistryValue(R"(HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432Node\TarnwickDesktopTest)", "Which"),
              (RegistryValue{REG_DWORD, std::string("\x20\0\0\0", 4)}));
  }
  EXPECT_FALSE(RegistryKeyExists(kKey, KEY_WOW64_32KEY));
  EXPECT_FALSE(RegistryKeyExists(kKey, KEY_WOW64_64KEY));
}

TEST(Desktop, TakesAwayOnlyTheKeysAndValuesItMade) {
  Desktop outer;
  outer.String(kKey, "Stays", "old");
  outer.String(kKey, "Other", "other");
  {
    Desktop inner;
    inner.Dword(kKey, "Stays", 7);
    inner.Dword(kKey, "Stays", 8);
    inner.String(kKey, "Goes", "x");
    inner.Key(kKey + R"(\Deep\Deeper\)");
    EXPECT_TRUE(RegistryKeyExists(kKey + R"(\Deep\Deeper)"));
  }
  EXPECT_EQ(ReadRegistryValue(kKey, "Stays"), (RegistryValue{REG_SZ, Terminated(L"old")}));
  EXPECT_TRUE(ReadRegistryValue(kKey, "Other"));
  EXPECT_FALSE(ReadRegistryValue(kKey, "Goes"));
  EXPECT_FALSE(RegistryKeyExists(kKey + R"(\Deep)"));
  outer.Remove();
  EXPECT_FALSE(RegistryKeyExists(kKey));
}

TEST(Desktop, NamesTheKeyOrPathThatItRefuses) {
  Desktop desktop;
  const auto message = [](auto action) -> std::string {
    try {
      action();
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "nothing thrown";
  };
  EXPECT_THAT(message([&] { desktop.Key(R"(HKLM\SOFTWARE\X)"); }), testing::HasSubstr(R"(HKLM\SOFTWARE\X)"));
  EXPECT_THAT(message([&] { desktop.File("relative.txt"); }), testing::HasSubstr("relative.txt"));
  EXPECT_THAT(message([&] { desktop.File(R"(C:\TarnwickTest\a:b<c>.txt)"); }),
              testing::HasSubstr("a:b<c>.txt"));
  desktop.File(kFolder + R"(\plain)");
  EXPECT_THAT(message([&] { desktop.Folder(kFolder + R"(\plain\below)"); }), testing::HasSubstr("plain"));
}

TEST(Desktop, IsTakenOverByItsJournal) {
  std::vector<MadeThing> made;
  {
    Desktop desktop;
    desktop.File(kFolder + R"(\a.txt)");
    desktop.Dword(kKey, "Kept", 1);
    made = desktop.Made();
    desktop.Keep();
  }
  EXPECT_TRUE(PathExists(kFolder + R"(\a.txt)"));
  EXPECT_TRUE(ReadRegistryValue(kKey, "Kept"));
  Desktop(made).Remove();
  EXPECT_FALSE(PathExists(kFolder));
  EXPECT_FALSE(RegistryKeyExists(kKey));
}

TEST(Desktop, MovesTakeTheThingsAlong) {
  Desktop second;
  {
    Desktop first;
    first.File(kFolder + R"(\a.txt)");
    second = std::move(first);
  }
  EXPECT_TRUE(PathExists(kFolder + R"(\a.txt)"));
  second = Desktop();
  EXPECT_FALSE(PathExists(kFolder));
}

ExecutableOptions RichOptions() {
  ExecutableOptions options;
  options.icons = {{{{16, 0xFF0000}, {32, 0x00FF00}, {256, 0x0000FF}}}, {{{48, 0x112233}}}};
  options.versions = {{0x0409, 1200, {{"FileDescription", "A game"}, {"ProductName", "Tarnwick test"}}},
                      {0x0419, 1200, {{"FileDescription", "Игра"}}}};
  return options;
}

TEST(DesktopExecutable, RunsAndEndsWithCodeZero) {
  Desktop desktop;
  desktop.Executable(kFolder + R"(\plain.exe)");
  EXPECT_EQ(tests::RunProgram(kFolder + R"(\plain.exe)", {}).exitCode, 0u);
  desktop.Executable(kFolder + R"(\Игра rich.exe)", RichOptions());
  EXPECT_EQ(tests::RunProgram(kFolder + R"(\Игра rich.exe)", {}).exitCode, 0u);
}

TEST(DesktopExecutable, IsPaddedToItsSizeAndStillRuns) {
  Desktop desktop;
  ExecutableOptions options = RichOptions();
  options.size = 1'000'000;
  desktop.Executable(kFolder + R"(\big.exe)", options);
  EXPECT_EQ(std::filesystem::file_size(LongPath(kFolder + R"(\big.exe)")), 1'000'000u);
  EXPECT_EQ(ReadBytes(kFolder + R"(\big.exe)"), ExecutableBytes(options));
  EXPECT_EQ(tests::RunProgram(kFolder + R"(\big.exe)", {}).exitCode, 0u);
}

std::string VersionText(const std::string& path, const std::wstring& block) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(Wide(path).c_str(), &ignored);
  std::string data(size, '\0');
  if (size == 0 || !GetFileVersionInfoW(Wide(path).c_str(), 0, size, data.data())) return "no version";
  void* text = nullptr;
  UINT length = 0;
  if (!VerQueryValueW(data.data(), block.c_str(), &text, &length)) return "no such block";
  if (block.ends_with(L"Translation")) return {static_cast<const char*>(text), length};
  return Narrow(static_cast<const wchar_t*>(text));
}

TEST(DesktopExecutable, CarriesAVersionResourceWithSeveralTranslations) {
  Desktop desktop;
  const std::string path = kFolder + R"(\version.exe)";
  desktop.Executable(path, RichOptions());
  EXPECT_EQ(VersionText(path, L"\\VarFileInfo\\Translation"),
            std::string("\x09\x04\xB0\x04\x19\x04\xB0\x04", 8));
  EXPECT_EQ(VersionText(path, L"\\StringFileInfo\\040904b0\\FileDescription"), "A game");
  EXPECT_EQ(VersionText(path, L"\\StringFileInfo\\040904b0\\ProductName"), "Tarnwick test");
  EXPECT_EQ(VersionText(path, L"\\StringFileInfo\\041904b0\\FileDescription"), "Игра");
  desktop.Executable(path);
  EXPECT_EQ(VersionText(path, L"\\VarFileInfo\\Translation"), "no version");
}

// The colour in the middle of an icon, as 0xRRGGBB.
uint32_t MiddleColour(HICON icon, int size) {
  ICONINFO info{};
  if (!GetIconInfo(icon, &info)) return 0xFFFFFFFF;
  HDC screen = CreateCompatibleDC(nullptr);
  BITMAPINFO format{};
  format.bmiHeader = {sizeof(BITMAPINFOHEADER), size, -size, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  std::vector<uint32_t> pixels(static_cast<size_t>(size) * static_cast<size_t>(size));
  GetDIBits(screen, info.hbmColor, 0, static_cast<UINT>(size), pixels.data(), &format, DIB_RGB_COLORS);
  DeleteObject(info.hbmColor);
  DeleteObject(info.hbmMask);
  DeleteDC(screen);
  return pixels[pixels.size() / 2 + static_cast<size_t>(size) / 2] & 0xFFFFFF;
}

uint32_t ExtractedColour(const std::string& path, int index, int size) {
  HICON icon = nullptr;
  if (PrivateExtractIconsW(Wide(path).c_str(), index, size, size, &icon, nullptr, 1, 0) != 1 ||
      icon == nullptr)
    return 0xFFFFFFFF;
  const Icon owner(icon);
  return MiddleColour(icon, size);
}

TEST(DesktopExecutable, ShowsTheChosenIcons) {
  Desktop desktop;
  const std::string path = kFolder + R"(\icons.exe)";
  desktop.Executable(path, RichOptions());
  EXPECT_EQ(ExtractedColour(path, 0, 16), 0xFF0000u);
  EXPECT_EQ(ExtractedColour(path, 0, 32), 0x00FF00u);
  EXPECT_EQ(ExtractedColour(path, 0, 256), 0x0000FFu);
  EXPECT_EQ(ExtractedColour(path, 1, 48), 0x112233u);
  EXPECT_EQ(ExtractedColour(path, 2, 48), 0xFFFFFFFFu);
}

TEST(DesktopIconFile, ShowsItsImages) {
  Desktop desktop;
  const std::string path = kFolder + R"(\a.ico)";
  desktop.IconFile(path, {{{16, 0xABCDEF}, {256, 0x00AA55}}});
  EXPECT_EQ(ExtractedColour(path, 0, 16), 0xABCDEFu);
  EXPECT_EQ(ExtractedColour(path, 0, 256), 0x00AA55u);
  EXPECT_THROW(IconFileBytes({{{300, 0}}}), std::runtime_error);
  EXPECT_THROW(IconFileBytes({{{0, 0}}}), std::runtime_error);
}

}  // namespace
}  // namespace tarnwick::desktop
