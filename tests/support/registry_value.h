#pragma once
// The registry as a test finds it, read without the library. Keys begin with a hive's long name; texts are UTF-8.

#include "foundation/windows_api.h"

#include <optional>
#include <string>

namespace tarnwick::tests {

struct RegistryValue {
  DWORD type = 0;
  std::string bytes;
  bool operator==(const RegistryValue&) const = default;
};

// The value of this name, or of the key itself for an empty one. `view` is KEY_WOW64_32KEY, KEY_WOW64_64KEY or 0.
std::optional<RegistryValue> ReadRegistryValue(const std::string& key, const std::string& name,
                                               REGSAM view = 0);

bool RegistryKeyExists(const std::string& key, REGSAM view = 0);

}  // namespace tarnwick::tests
