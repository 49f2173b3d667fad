// The library as a file: what it exports and imports, how it may be loaded, and what it says of itself.
#include "foundation/windows_api.h"
#include "support/library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::tests {
namespace {

class LibraryFile : public testing::Test {
 protected:
  void SetUp() override {
    const std::filesystem::path path = LibraryPath(TARNWICK_DLL);
    bytes_.resize(std::filesystem::file_size(path));
    std::ifstream(path, std::ios::binary).read(bytes_.data(), static_cast<std::streamsize>(bytes_.size()));
    ASSERT_GT(bytes_.size(), sizeof(IMAGE_DOS_HEADER));
    headers_ = At<IMAGE_NT_HEADERS64>(static_cast<size_t>(At<IMAGE_DOS_HEADER>(0).e_lfanew));
    ASSERT_EQ(headers_.Signature, static_cast<DWORD>(IMAGE_NT_SIGNATURE));
  }

  template <class Record>
  Record At(size_t offset) const {
    Record record;
    if (offset + sizeof record > bytes_.size()) throw std::runtime_error("behind the file's end");
    std::memcpy(&record, bytes_.data() + offset, sizeof record);
    return record;
  }

  // Where the file holds what is loaded at this address.
  size_t Offset(DWORD address) const {
    size_t at = static_cast<size_t>(At<IMAGE_DOS_HEADER>(0).e_lfanew) + sizeof(IMAGE_NT_HEADERS64);
    for (int i = 0; i < headers_.FileHeader.NumberOfSections; ++i, at += sizeof(IMAGE_SECTION_HEADER)) {
      const auto section = At<IMAGE_SECTION_HEADER>(at);
      if (address >= section.VirtualAddress && address < section.VirtualAddress + section.SizeOfRawData) {
        return address - section.VirtualAddress + section.PointerToRawData;
      }
    }
    throw std::runtime_error("no section holds the address");
  }

  std::string Text(DWORD address) const { return std::string(bytes_.c_str() + Offset(address)); }

  DWORD Directory(int index) const { return headers_.OptionalHeader.DataDirectory[index].VirtualAddress; }

  std::string bytes_;
  IMAGE_NT_HEADERS64 headers_{};
};

TEST_F(LibraryFile, IsA64BitLibrary) {
  EXPECT_EQ(headers_.FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64);
  EXPECT_EQ(headers_.OptionalHeader.Magic, IMAGE_NT_OPTIONAL_HDR64_MAGIC);
  EXPECT_NE(headers_.FileHeader.Characteristics & IMAGE_FILE_DLL, 0);
}

TEST_F(LibraryFile, MayBeLoadedAnywhereAndHoldsNoExecutableData) {
  const WORD flags = headers_.OptionalHeader.DllCharacteristics;
  EXPECT_NE(flags & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE, 0);
  EXPECT_NE(flags & 0x20, 0) << "HIGH_ENTROPY_VA";
  EXPECT_NE(flags & IMAGE_DLLCHARACTERISTICS_NX_COMPAT, 0);
  EXPECT_EQ(headers_.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED, 0);
}

TEST_F(LibraryFile, ExportsExactlyTheElevenPlainNames) {
  const auto exports = At<IMAGE_EXPORT_DIRECTORY>(Offset(Directory(IMAGE_DIRECTORY_ENTRY_EXPORT)));
  std::vector<std::string> names;
  for (DWORD i = 0; i < exports.NumberOfNames; ++i) {
    names.push_back(Text(At<DWORD>(Offset(exports.AddressOfNames) + i * sizeof(DWORD))));
  }
  EXPECT_THAT(
      names, testing::UnorderedElementsAre("IA_RunMultiPlatformGameScanJson", "RunMultiPlatformGameScan",
                                           "IA_GetGameDetailsByPathJson", "IA_RefreshCache", "IA_GetAppsJson",
                                           "IA_GetAppsJsonAll", "IA_FindGamesJson", "IA_FindGamesByFile",
                                           "SetFocusCallbackEx", "StartFocusWatch", "StopFocusWatch"));
  EXPECT_EQ(exports.NumberOfFunctions, 11u) << "nothing is exported by number alone";
  EXPECT_EQ(Text(exports.Name), "Tarnwick.dll");
}

TEST_F(LibraryFile, ImportsLibrariesOfTheSystemOnly) {
  const std::set<std::string> system = {"kernel32.dll", "advapi32.dll", "shell32.dll", "shlwapi.dll",
                                        "ole32.dll",    "user32.dll",   "gdi32.dll",   "version.dll",
                                        "comctl32.dll", "msvcrt.dll",   "ntdll.dll",   "windowscodecs.dll"};
  size_t at = Offset(Directory(IMAGE_DIRECTORY_ENTRY_IMPORT));
  int count = 0;
  for (auto row = At<IMAGE_IMPORT_DESCRIPTOR>(at); row.Name != 0; row = At<IMAGE_IMPORT_DESCRIPTOR>(at)) {
    std::string name = Text(row.Name);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    // The C runtime of newer systems comes in many parts.
    EXPECT_TRUE(system.contains(name) || name.rfind("api-ms-win-", 0) == 0 || name == "ucrtbase.dll") << name;
    at += sizeof row;
    ++count;
  }
  EXPECT_GT(count, 3);
}

TEST_F(LibraryFile, NamesItsVersion) {
  const std::wstring path = LibraryPath(TARNWICK_DLL);
  std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
  ASSERT_FALSE(block.empty());
  ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
  const auto value = [&](const std::wstring& name) {
    void* text = nullptr;
    UINT length = 0;
    VerQueryValueW(block.data(), (L"\\StringFileInfo\\040904b0\\" + name).c_str(), &text, &length);
    return text == nullptr ? std::wstring() : std::wstring(static_cast<const wchar_t*>(text));
  };
  EXPECT_EQ(value(L"ProductName"), L"Tarnwick");
  EXPECT_EQ(value(L"OriginalFilename"), L"Tarnwick.dll");
  EXPECT_NE(value(L"FileDescription"), L"");
  void* fixed = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &fixed, &length));
  const auto* info = static_cast<const VS_FIXEDFILEINFO*>(fixed);
  const std::wstring numbers = std::to_wstring(HIWORD(info->dwFileVersionMS)) + L"." +
                               std::to_wstring(LOWORD(info->dwFileVersionMS)) + L"." +
                               std::to_wstring(HIWORD(info->dwFileVersionLS));
  EXPECT_EQ(numbers, value(L"FileVersion"));
  EXPECT_EQ(numbers, value(L"ProductVersion"));
  EXPECT_EQ(info->dwFileType, static_cast<DWORD>(VFT_DLL));
}

}  // namespace
}  // namespace tarnwick::tests
