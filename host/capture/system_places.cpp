// Reader.
#include "host/capture/system_places.h"

#include <algorithm>
#include <string_view>

namespace tarnwick::host {
namespace {

using Text = std::wstring_view;

// Below SOFTWARE, in lower case.
constexpr Text kSystemKeys[] = {L"classes", L"microsoft", L"policies", L"wine"};
constexpr Text kOpenKeys[] = {
    LR"(classes\local settings\software\microsoft\windows\currentversion\appmodel\repository\packages)",
    LR"(microsoft\games)",
    LR"(microsoft\gamingservices)",
    LR"(microsoft\microsoft games)",
    LR"(microsoft\windows\currentversion\gameux)",
    LR"(microsoft\windows\currentversion\installagent\categorycache)",
    LR"(microsoft\windows\currentversion\installservice\state\categorycache)",
    LR"(microsoft\windows\currentversion\uninstall)",
};

constexpr Text kSystemFolders[] = {
    LR"(c:\windows)",   LR"(c:\$recycle.bin)", LR"(c:\system volume information)",
    LR"(c:\boot)",      LR"(c:\recovery)",     LR"(c:\efi)",
    LR"(c:\config.msi)"};
// Windows keeps the icons of installed applications there.
constexpr Text kOpenFolder = LR"(c:\windows\installer\)";
constexpr Text kStartMenu = LR"(\start menu)";

bool IsBelow(Text text, Text root) {
  return text.starts_with(root) && (text.size() == root.size() || text[root.size()] == L'\\');
}

}  // namespace

bool IsSystemKey(const KeyPlace& place) {
  constexpr Text kSoftware = L"software";
  const std::wstring lower = LowerText(place.subkey);
  const bool applications = place.hive == "HKEY_LOCAL_MACHINE" || place.hive == "HKEY_CURRENT_USER";
  if (!applications || !IsBelow(lower, kSoftware) || lower.size() == kSoftware.size()) return true;
  const Text below = Text(lower).substr(kSoftware.size() + 1);
  const auto holdsIt = [&](Text root) { return IsBelow(below, root); };
  return std::ranges::any_of(kSystemKeys, holdsIt) && std::ranges::none_of(kOpenKeys, holdsIt);
}

bool IsSystemPath(const std::wstring& lowerPath) {
  const Text path = lowerPath;
  if (path.starts_with(kOpenFolder)) return false;
  const bool system = std::ranges::any_of(kSystemFolders, [&](Text root) { return IsBelow(path, root); });
  return system || path.find(kStartMenu) != Text::npos;
}

}  // namespace tarnwick::host
