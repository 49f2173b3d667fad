// Edge: this machine's drives and links.
#include "desktop/capture_machine.h"

#include "common/capture_rules.h"
#include "common/wide_text.h"
#include "desktop/windows_calls.h"
#include "foundation/owner.h"

#include <optional>
#include <tuple>

namespace tarnwick::desktop {
namespace {

using FolderId = std::tuple<DWORD, DWORD, DWORD>;

std::optional<FolderId> IdOf(const std::wstring& path) {
  HANDLE opened = CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                              nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return std::nullopt;
  const Handle owner(opened);
  BY_HANDLE_FILE_INFORMATION told{};
  if (!GetFileInformationByHandle(opened, &told)) return std::nullopt;
  return FolderId{told.dwVolumeSerialNumber, told.nFileIndexHigh, told.nFileIndexLow};
}

std::string WindowsFolder() {
  wchar_t folder[MAX_PATH] = {};
  GetWindowsDirectoryW(folder, MAX_PATH);
  return common::Folded(common::Narrow(folder));
}

// Empty if there is no such thing.
std::string LongNameOf(const std::string& path) {
  std::wstring found(32768, L'\0');
  // Wine leaves a path with the prefix of long ones as it is.
  found.resize(GetLongPathNameW(common::Wide(path).c_str(), found.data(), static_cast<DWORD>(found.size())));
  return common::Narrow(found);
}

bool IsLink(const std::string& path) {
  const DWORD attributes = GetFileAttributesW(LongPath(path).c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace

std::string DriveFault(char drive) {
  const std::wstring root = {static_cast<wchar_t>(drive), L':', L'\\'};
  const std::optional<FolderId> id = IdOf(root);
  if (!id) return "this machine has no drive " + std::string(1, drive) + ":";
  // Wine shows the whole system below as a drive, Z: as a rule: nothing of that is there to be spoilt.
  const std::optional<FolderId> below = IdOf(L"\\\\?\\unix\\");
  if (below && *below == *id)
    return "drive " + std::string(1, drive) + ": of this machine is the root of the system below Wine";
  return {};
}

std::string PlaceFault(const std::string& path) {
  const std::string folded = common::Folded(path) + "\\";
  const std::string windows = WindowsFolder() + "\\";
  if (folded.starts_with(windows) && !folded.starts_with(windows + "INSTALLER\\"))
    return "lies in one of the system's own folders";
  for (size_t end = path.find('\\', 3);; end = path.find('\\', end + 1)) {
    if (IsLink(path.substr(0, end))) return "leads out through the link '" + path.substr(0, end) + "'";
    if (end == std::string::npos) return {};
  }
}

std::string WithLongNames(const std::string& path) {
  if (path.find('~') == std::string::npos) return path;
  for (size_t end = path.size(); end != std::string::npos && end > 3; end = path.rfind('\\', end - 1)) {
    const std::string found = LongNameOf(path.substr(0, end));
    if (!found.empty()) return found + path.substr(end);
  }
  return path;
}

}  // namespace tarnwick::desktop
