#pragma once
// What the launchers share whose games stand in the registry: one record is a subkey and its values.

#include "foundation/machine/uninstall_key.h"
#include "matching/registry.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace tarnwick {

// The key text of an installed program's record.
inline std::string UninstallRecordKey(const std::string& name) {
  return std::string(kUninstallKey) + '\\' + name;
}

// True if all the named values are there, whatever they hold.
bool HasValues(const RegistryValues& values, std::initializer_list<const char*> names);

// Names of the direct subkeys by the 64-bit view or, if that shows none, by the 32-bit view.
std::vector<std::string> SubKeysOfSomeView(const std::string& keyText);

}  // namespace tarnwick
