#pragma once
// Where Windows keeps the record of each installed program: one subkey for each.

namespace tarnwick {

// Below a hive.
inline constexpr char kUninstallSubkey[] = R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall)";

// The machine's, as key text.
inline constexpr char kUninstallKey[] =
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall)";

}  // namespace tarnwick
