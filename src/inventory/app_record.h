#pragma once
// One installed application, as the Uninstall keys describe it.

#include <cstdint>
#include <string>

namespace tarnwick {

struct AppRecord {
  std::wstring DisplayName;
  std::wstring Publisher;
  std::wstring DisplayVersion;
  std::wstring InstallDate;
  std::wstring InstallLocation;  // ResolveInstallLocation may put another folder here
  std::wstring DisplayIcon;
  std::wstring UninstallString;
  int32_t EstimatedSize = 0;  // kilobytes, 0 when the key has none
  std::wstring IconDataUri;   // empty until LoadAppIconLazy, and behind it where no icon could be had
  bool IconLoaded = false;    // an icon is tried once, whatever comes of it
};

}  // namespace tarnwick
