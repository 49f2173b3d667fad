// Edge: mount point reparse data, or, under Wine, the tools of the system below.
#include "desktop/junction.h"

#include "common/wide_text.h"
#include "desktop/bytes.h"
#include "desktop/file_maker.h"
#include "desktop/windows_calls.h"
#include "foundation/owner.h"

#include <winioctl.h>

namespace tarnwick::desktop {
namespace {

using WineFileName = char*(CDECL*)(const wchar_t*);

WineFileName FindWineFileName() {
  const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name");
  return reinterpret_cast<WineFileName>(reinterpret_cast<void*>(found));
}

// The path as the system below Wine names it.
std::wstring UnixPath(const std::string& path) {
  char* name = FindWineFileName()(common::Wide(path).c_str());
  if (name == nullptr) throw WindowsError("Wine knows no path for", path, GetLastError());
  const std::wstring wide = common::Wide(name);
  HeapFree(GetProcessHeap(), 0, name);
  return wide;
}

bool Exists(const std::string& path) {
  return GetFileAttributesW(LongPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Runs a tool of the system below and waits until `path` exists, or is gone. Its exit code is not to be had.
void RunUnixTool(const std::wstring& tool, const std::wstring& arguments, const std::string& path,
                 bool appears) {
  std::wstring command = L"\\\\?\\unix\\bin\\" + tool;
  const std::wstring program = command;
  command += L" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process))
    throw WindowsError("can't run the tool for the link", path, GetLastError());
  const Handle owner(process.hProcess);
  const Handle thread(process.hThread);
  for (int tries = 0; tries < 500 && Exists(path) != appears; ++tries) Sleep(10);
  if (Exists(path) != appears) throw std::runtime_error("can't make or remove the link '" + path + "'");
}

// A mount point's reparse data buffer: tag, length, then the target twice, once for the system, once for
// display.
std::string MountPointData(const std::wstring& target) {
  const std::wstring plain = target.substr(4);  // without the long path's prefix
  const std::wstring system = L"\\??\\" + plain;
  const unsigned systemBytes = static_cast<unsigned>(system.size() * sizeof(wchar_t));
  const unsigned plainBytes = static_cast<unsigned>(plain.size() * sizeof(wchar_t));
  std::string data;
  Append32(data, IO_REPARSE_TAG_MOUNT_POINT);
  Append16(data, 8 + systemBytes + 2 + plainBytes + 2);
  Append16(data, 0);
  Append16(data, 0);
  Append16(data, systemBytes);
  Append16(data, systemBytes + 2);
  Append16(data, plainBytes);
  for (const std::wstring* text : {&system, &plain}) {
    for (const wchar_t unit : *text) Append16(data, unit);
    Append16(data, 0);
  }
  return data;
}

void SetMountPoint(const std::string& path, const std::string& target) {
  const std::wstring wide = LongPath(path);
  HANDLE file = CreateFileW(wide.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                            FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (file == INVALID_HANDLE_VALUE) throw WindowsError("can't open the folder", path, GetLastError());
  const Handle owner(file);
  std::string data = MountPointData(LongPath(target));
  DWORD returned = 0;
  if (!DeviceIoControl(file, FSCTL_SET_REPARSE_POINT, data.data(), static_cast<DWORD>(data.size()), nullptr,
                       0, &returned, nullptr))
    throw WindowsError("can't make the junction", path, GetLastError());
}

}  // namespace

void MakeJunction(const std::string& path, const std::string& target, Journal& journal) {
  MakeFolderOf(path, journal);
  if (Exists(path))
    throw std::runtime_error("can't make the junction '" + path + "': something stands there");
  if (FindWineFileName() != nullptr) {
    RunUnixTool(L"ln", L"-s \"" + UnixPath(target) + L"\" \"" + UnixPath(path) + L"\"", path, true);
    journal.push_back({MadeThing::Kind::kLink, path, {}, View::kNative, {}});
    return;
  }
  if (!CreateDirectoryW(LongPath(path).c_str(), nullptr))
    throw WindowsError("can't make the folder", path, GetLastError());
  journal.push_back({MadeThing::Kind::kLink, path, {}, View::kNative, {}});
  SetMountPoint(path, target);
}

void UnmakeJunction(const MadeThing& thing) {
  const DWORD attributes = GetFileAttributesW(LongPath(thing.place).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return;
  // Wine removes what such a link leads to, or refuses; only the system below can take away the link itself.
  if (FindWineFileName() != nullptr) {
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
      RunUnixTool(L"rm", L"\"" + UnixPath(thing.place) + L"\"", thing.place, false);
    return;
  }
  if (!RemoveDirectoryW(LongPath(thing.place).c_str()))
    throw WindowsError("can't remove the junction", thing.place, GetLastError());
}

}  // namespace tarnwick::desktop
