// Edge: records of the registry, as the launchers that keep their games there read them.
#include "launchers/registry_record.h"

#include <algorithm>

namespace tarnwick {

bool HasValues(const RegistryValues& values, std::initializer_list<const char*> names) {
  return std::all_of(names.begin(), names.end(), [&](const char* name) { return values.contains(name); });
}

std::vector<std::string> SubKeysOfSomeView(const std::string& keyText) {
  std::vector<std::string> names = EnumRegistrySubKeys(keyText, RegistryView::k64);
  return names.empty() ? EnumRegistrySubKeys(keyText, RegistryView::k32) : names;
}

}  // namespace tarnwick
