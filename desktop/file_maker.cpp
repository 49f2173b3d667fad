// Edge: writes files and folders, through paths of any length.
#include "desktop/file_maker.h"

#include "desktop/held_folder.h"
#include "desktop/junction.h"
#include "desktop/windows_calls.h"
#include "foundation/owner.h"

#include <winioctl.h>

#include <algorithm>

namespace tarnwick::desktop {
namespace {

struct FileTraits {
  using Value = HANDLE;
  static Value None() { return INVALID_HANDLE_VALUE; }
  static void Close(Value file) { CloseHandle(file); }
};
using FileHandle = Owner<FileTraits>;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

FileHandle Open(const std::wstring& path, DWORD access, DWORD disposition,
                DWORD flags = FILE_ATTRIBUTE_NORMAL) {
  return FileHandle(CreateFileW(path.c_str(), access, kShareAll, nullptr, disposition, flags, nullptr));
}

uint64_t Number(const FILETIME& time) {
  return (static_cast<uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

FILETIME Time(uint64_t number) {
  return {static_cast<DWORD>(number & 0xFFFFFFFF), static_cast<DWORD>(number >> 32)};
}

void WriteAll(HANDLE file, std::string_view bytes, const std::string& path) {
  while (!bytes.empty()) {
    const DWORD part = static_cast<DWORD>(std::min<size_t>(bytes.size(), 1u << 20));
    DWORD written = 0;
    if (!WriteFile(file, bytes.data(), part, &written, nullptr) || written == 0)
      throw WindowsError("can't write the file", path, GetLastError());
    bytes.remove_prefix(written);
  }
}

std::string ReadWhole(HANDLE file, const std::string& path) {
  std::string bytes;
  char part[65536];
  for (;;) {
    DWORD read = 0;
    if (!ReadFile(file, part, sizeof part, &read, nullptr))
      throw WindowsError("can't read the file", path, GetLastError());
    if (read == 0) return bytes;
    bytes.append(part, read);
  }
}

std::optional<OldContent> ReadOldFile(const std::string& path) {
  const FileHandle file = Open(LongPath(path), GENERIC_READ, OPEN_EXISTING);
  if (!file) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return std::nullopt;
    throw WindowsError("can't read the file", path, error);
  }
  FILETIME written{};
  GetFileTime(file.Get(), nullptr, nullptr, &written);
  return OldContent{ReadWhole(file.Get(), path), 0, Number(written)};
}

void SetSize(HANDLE file, uint64_t size, const std::string& path) {
  LARGE_INTEGER end;
  end.QuadPart = static_cast<LONGLONG>(size);
  if (!SetFilePointerEx(file, end, nullptr, FILE_BEGIN) || !SetEndOfFile(file))
    throw WindowsError("can't set the size of the file", path, GetLastError());
}

void SetSparse(HANDLE file, const std::string& path) {
  DWORD returned = 0;
  if (!DeviceIoControl(file, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &returned, nullptr))
    throw WindowsError("can't make the file sparse", path, GetLastError());
}

void PutBack(const MadeThing& thing) {
  const FileHandle file = Open(LongPath(thing.place), GENERIC_WRITE, CREATE_ALWAYS);
  if (!file) throw WindowsError("can't put back the file", thing.place, GetLastError());
  WriteAll(file.Get(), thing.before->bytes, thing.place);
  const FILETIME time = Time(thing.before->time);
  SetFileTime(file.Get(), nullptr, nullptr, &time);
}

bool Gone(DWORD error) { return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND; }

// Something else may still look at a file that was just written or run: an indexer, a virus scanner.
template <class Attempt>
DWORD Patiently(Attempt attempt) {
  DWORD error = ERROR_SUCCESS;
  for (int tries = 0; tries < 20; ++tries) {
    if (attempt()) return ERROR_SUCCESS;
    error = GetLastError();
    if (error != ERROR_SHARING_VIOLATION && error != ERROR_ACCESS_DENIED) return error;
    Sleep(50);
  }
  return error;
}

void TakeAwayFile(const std::string& path) {
  const std::wstring wide = LongPath(path);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return;
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_NORMAL);
  const DWORD error = Patiently([&] { return DeleteFileW(wide.c_str()) != 0; });
  if (error != ERROR_SUCCESS && !Gone(error)) throw WindowsError("can't remove the file", path, error);
}

void TakeAwayFolder(const std::string& path) {
  const std::wstring wide = LongPath(path);
  const DWORD error = Patiently([&] { return RemoveDirectoryW(wide.c_str()) != 0; });
  if (error != ERROR_SUCCESS && !Gone(error) && error != ERROR_DIR_NOT_EMPTY)
    throw WindowsError("can't remove the folder", path, error);
}

void PutBackTime(const MadeThing& thing) {
  const FileHandle file =
      Open(LongPath(thing.place), FILE_WRITE_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  const FILETIME time = Time(thing.before->time);
  if (file) SetFileTime(file.Get(), nullptr, nullptr, &time);
}

}  // namespace

void MakeFolder(const std::string& path, Journal& journal) {
  const std::wstring wide = LongPath(path);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
      throw std::runtime_error("can't make the folder '" + path + "': a file stands there");
    return;
  }
  MakeFolderOf(path, journal);
  if (CreateDirectoryW(wide.c_str(), nullptr)) {
    journal.push_back({MadeThing::Kind::kFolder, path, {}, View::kNative, {}});
  } else if (GetLastError() != ERROR_ALREADY_EXISTS) {
    throw WindowsError("can't make the folder", path, GetLastError());
  }
}

void MakeFolderOf(const std::string& path, Journal& journal) {
  const size_t nameEnd = path.find_last_not_of("\\/");
  const size_t separator = nameEnd == std::string::npos ? nameEnd : path.find_last_of("\\/", nameEnd);
  if (separator == std::string::npos) throw std::runtime_error("not an absolute path: " + path);
  const std::string parent = path.substr(0, separator);
  // A drive or a network name alone is nothing that could be made.
  if (parent.size() > 2) MakeFolder(parent, journal);
}

void MakeFile(const std::string& path, std::string_view bytes, uint64_t size, bool sparse, bool known,
              Journal& journal) {
  MakeFolderOf(path, journal);
  const std::optional<OldContent> before = known ? std::nullopt : ReadOldFile(path);
  const FileHandle file = Open(LongPath(path), GENERIC_WRITE, CREATE_ALWAYS);
  if (!file) throw WindowsError("can't make the file", path, GetLastError());
  if (!known) journal.push_back({MadeThing::Kind::kFile, path, {}, View::kNative, before});
  if (sparse) SetSparse(file.Get(), path);
  WriteAll(file.Get(), bytes, path);
  if (size > bytes.size()) SetSize(file.Get(), size, path);
}

void SetModifiedTime(const std::string& path, int64_t unixSeconds, bool known, Journal& journal) {
  const FileHandle file = Open(LongPath(path), FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, OPEN_EXISTING,
                               FILE_FLAG_BACKUP_SEMANTICS);
  if (!file) throw WindowsError("can't set the time of", path, GetLastError());
  FILETIME before{};
  GetFileTime(file.Get(), nullptr, nullptr, &before);
  constexpr int64_t kUnixEpoch = 11644473600;  // seconds from 1601 to 1970
  const FILETIME time = Time(static_cast<uint64_t>((unixSeconds + kUnixEpoch) * 10'000'000));
  if (!SetFileTime(file.Get(), nullptr, nullptr, &time))
    throw WindowsError("can't set the time of", path, GetLastError());
  if (!known)
    journal.push_back({MadeThing::Kind::kTime, path, {}, View::kNative, OldContent{{}, 0, Number(before)}});
}

void UnmakeFile(const MadeThing& thing) {
  switch (thing.kind) {
    case MadeThing::Kind::kFolder:
      return TakeAwayFolder(thing.place);
    case MadeThing::Kind::kLink:
      return UnmakeJunction(thing);
    case MadeThing::Kind::kTime:
      return PutBackTime(thing);
    case MadeThing::Kind::kHold:
      return LetFolderGo(thing);
    default:
      return thing.before ? PutBack(thing) : TakeAwayFile(thing.place);
  }
}

}  // namespace tarnwick::desktop
