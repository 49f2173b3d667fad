#pragma once
// What the launchers share whose games stand in the registry: one record is a subkey and its values.

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace tarnwick {

inline constexpr bool k32BitView = false;
inline constexpr bool k64BitView = true;

// Where Windows keeps the record of each installed program. Ends in a backslash, so that a name can follow.
inline const std::string kUninstallRoot =
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\Uninstall\)";

using RegistryValues = std::map<std::string, std::string>;  // by name, compared byte by byte

// The value's text, or empty if there is no such value.
std::string ValueOrEmpty(const RegistryValues& values, const std::string& name);

// True if all the named values are there, whatever they hold.
bool HasValues(const RegistryValues& values, std::initializer_list<const char*> names);

// Names of the direct subkeys by the 64-bit view or, if that shows none, by the 32-bit view.
std::vector<std::string> SubKeysOfSomeView(const std::string& keyText);

}  // namespace tarnwick
