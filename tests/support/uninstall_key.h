#pragma once
// Where Windows keeps the records of installed programs. Both end in a backslash, so that a name can follow.

#include <string>

namespace tarnwick::tests {

inline const std::string kUninstallPath = R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)";
inline const std::string kUninstallKey = R"(HKEY_LOCAL_MACHINE\)" + kUninstallPath;
inline const std::string kUserUninstallKey =
    R"(HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Uninstall\)";

}  // namespace tarnwick::tests
