// Edge: records of the registry, as the launchers that keep their games there read them.
#include "launchers/registry_record.h"

#include "matching/registry.h"

#include <algorithm>

namespace tarnwick {

std::string ValueOrEmpty(const RegistryValues& values, const std::string& name) {
  const auto found = values.find(name);
  return found == values.end() ? std::string() : found->second;
}

bool HasValues(const RegistryValues& values, std::initializer_list<const char*> names) {
  return std::all_of(names.begin(), names.end(), [&](const char* name) { return values.contains(name); });
}

std::vector<std::string> SubKeysOfSomeView(const std::string& keyText) {
  std::vector<std::string> names = EnumRegistrySubKeys(keyText, k64BitView);
  return names.empty() ? EnumRegistrySubKeys(keyText, k32BitView) : names;
}

}  // namespace tarnwick
