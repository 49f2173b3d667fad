// Edge: a process and an event.
#include "desktop/held_folder.h"

#include "common/capture_rules.h"
#include "common/wide_text.h"
#include "desktop/windows_calls.h"
#include "foundation/owner.h"

#include <filesystem>
#include <functional>

namespace tarnwick::desktop {
namespace {

constexpr int kTries = 1000;
constexpr DWORD kPause = 10;  // milliseconds

// By this the holder is told to let go.
std::wstring EventName(const std::string& path) {
  return L"TarnwickDesktopHolds-" + std::to_wstring(std::hash<std::string>()(common::Folded(path)));
}

bool IsHeld(const std::string& path) {
  const HANDLE opened = CreateFileW(LongPath(path).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_SHARING_VIOLATION;
  const Handle owner(opened);
  return false;
}

bool WaitUntilHeld(const std::string& path, bool held) {
  for (int tries = 0; tries < kTries && IsHeld(path) != held; ++tries) Sleep(kPause);
  return IsHeld(path) == held;
}

std::wstring HolderProgram() {
  std::wstring own(32768, L'\0');
  own.resize(GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())));
  return std::filesystem::path(own).replace_filename(L"tarnwick-desktop.exe").wstring();
}

}  // namespace

void HoldFolderApart(const std::string& path, Journal& journal) {
  const std::wstring program = HolderProgram();
  std::wstring command = L"\"" + program + L"\" hold \"" + common::Wide(path) + L"\"";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
                      nullptr, &startup, &process))
    throw WindowsError("can't start the program that holds the folder", path, GetLastError());
  const Handle owner(process.hProcess);
  const Handle thread(process.hThread);
  journal.push_back({MadeThing::Kind::kHold, path, {}, View::kNative, {}});
  if (!WaitUntilHeld(path, true)) throw std::runtime_error("can't hold the folder '" + path + "'");
}

void LetFolderGo(const MadeThing& thing) {
  const Handle told(OpenEventW(EVENT_MODIFY_STATE, FALSE, EventName(thing.place).c_str()));
  if (!told) return;
  SetEvent(told.Get());
  if (!WaitUntilHeld(thing.place, false))
    throw std::runtime_error("can't let go the folder '" + thing.place + "'");
}

void HoldFolderHere(const std::string& path) {
  const Handle told(CreateEventW(nullptr, TRUE, FALSE, EventName(path).c_str()));
  if (!told) throw WindowsError("can't hold the folder", path, GetLastError());
  const HANDLE opened = CreateFileW(LongPath(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) throw WindowsError("can't hold the folder", path, GetLastError());
  const Handle owner(opened);
  WaitForSingleObject(told.Get(), INFINITE);
}

}  // namespace tarnwick::desktop
