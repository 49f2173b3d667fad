// Edge: files and folders.
#include "host/capture/file_copy.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>

#include "common/wide_text.h"
#include "foundation/machine/versions.h"
#include "foundation/owner.h"

namespace tarnwick::host {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kProgramEndings[] = {L".exe", L".dll", L".scr", L".com", L".ocx", L".cpl", L".mun"};
constexpr const wchar_t* kVersionTexts[] = {L"FileDescription", L"ProductName",     L"CompanyName",
                                            L"FileVersion",     L"ProductVersion",  L"InternalName",
                                            L"LegalCopyright",  L"OriginalFilename"};

// A file as it is found: what it takes for all further questions.
struct FoundFile {
  std::wstring path;
  uint64_t size = 0;
  int64_t modified = 0;  // seconds since 1970
};

int64_t UnixSeconds(const FILETIME& time) {
  constexpr int64_t kStepsPerSecond = 10'000'000;
  constexpr int64_t kSecondsTo1970 = 11'644'473'600;
  return (static_cast<int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) / kStepsPerSecond -
         kSecondsTo1970;
}

bool EndsIn(const std::wstring& path, const wchar_t* ending) { return LowerText(path).ends_with(ending); }

bool IsProgramName(const std::wstring& path) {
  return std::ranges::any_of(kProgramEndings, [&](const wchar_t* ending) { return EndsIn(path, ending); });
}

std::string FirstBytes(const std::wstring& path, uint64_t most) {
  constexpr size_t kPiece = size_t{1} << 20;
  std::ifstream file(fs::path(path), std::ios::binary);
  std::string bytes;
  while (file && bytes.size() < most) {
    const size_t before = bytes.size();
    bytes.resize(before + static_cast<size_t>(std::min<uint64_t>(kPiece, most - before)));
    file.read(bytes.data() + before, static_cast<std::streamsize>(bytes.size() - before));
    bytes.resize(before + static_cast<size_t>(file.gcount()));
  }
  return bytes;
}

bool CanBeListed(const std::wstring& folder) {
  WIN32_FIND_DATAW entry;
  const FindHandle find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
  return find || GetLastError() == ERROR_FILE_NOT_FOUND;
}

VersionCopy CopyVersion(const VersionBlock& block, const VersionTranslation& translation) {
  VersionCopy copy{translation.language, translation.codePage, {}};
  for (const wchar_t* name : kVersionTexts) {
    if (const auto text = VersionText(block, translation, name))
      copy.values[common::Narrow(name)] = common::Narrow(*text);
  }
  return copy;
}

std::vector<VersionCopy> CopyVersions(const std::wstring& path) {
  std::vector<VersionCopy> versions;
  const VersionBlock block = ReadVersionBlock(path);
  if (block.empty()) return versions;
  for (const VersionTranslation& translation : VersionTranslations(block))
    versions.push_back(CopyVersion(block, translation));
  return versions;
}

ProgramCopy CopyProgram(const FoundFile& file) {
  ProgramCopy copy{common::Narrow(file.path), file.size, EndsIn(file.path, L".ico"), {}, {}, {}};
  if (copy.iconFile)
    copy.icons = IconsOfIconFile(FirstBytes(file.path, kMostDataBytes));
  else {
    copy.versions = CopyVersions(file.path);
    copy.icons = IconsOfProgram(file.path);
  }
  return copy;
}

// A program that goes by another name is no data, either.
bool HoldsProgram(const std::string& bytes) { return bytes.starts_with("MZ"); }

// An icon file without an icon is a file like any other.
bool IsUsable(const ProgramCopy& program) { return !program.iconFile || !program.icons.empty(); }

void CopyFile(const AskedPath& asked, const FoundFile& file, MachineCopy& copy) {
  if (IsProgramName(file.path) || EndsIn(file.path, L".ico")) {
    ProgramCopy program = CopyProgram(file);
    if (asked.writeTime) program.modified = file.modified;
    if (IsUsable(program)) return copy.programs.push_back(std::move(program));
  }
  DataCopy data{common::Narrow(file.path), {}, false, file.size, {}, false};
  if (asked.read) data.bytes = FirstBytes(file.path, kMostDataBytes);
  if (HoldsProgram(data.bytes)) data.bytes.clear();
  data.cut = data.bytes.size() < file.size;
  if (asked.writeTime) data.modified = file.modified;
  copy.data.push_back(std::move(data));
}

}  // namespace

void CopyPath(const AskedPath& asked, MachineCopy& copy) {
  WIN32_FILE_ATTRIBUTE_DATA found{};
  if (!GetFileAttributesExW(asked.path.c_str(), GetFileExInfoStandard, &found)) {
    if (asked.meant) copy.missing.push_back(common::Narrow(asked.path));
    return;
  }
  const std::wstring& path = asked.path;
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    constexpr size_t kRootUnits = 3;
    if (path.size() > kRootUnits)
      copy.folders.push_back({common::Narrow(path), asked.listed && (asked.refused || !CanBeListed(path))});
    return;
  }
  const uint64_t size = static_cast<uint64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow;
  CopyFile(asked, {path, size, UnixSeconds(found.ftLastWriteTime)}, copy);
}

void CopyWholeFile(const std::wstring& path, MachineCopy& copy) {
  DataCopy data{
      common::Narrow(path), FirstBytes(path, std::numeric_limits<int64_t>::max()), false, 0, {}, false};
  data.size = data.bytes.size();
  copy.data.push_back(std::move(data));
}

std::wstring SpelledPath(const std::wstring& path) {
  std::vector<wchar_t> spelled(32768);
  const DWORD length = GetLongPathNameW(path.c_str(), spelled.data(), static_cast<DWORD>(spelled.size()));
  return length == 0 || length >= spelled.size() ? path : std::wstring(spelled.data(), length);
}

}  // namespace tarnwick::host
