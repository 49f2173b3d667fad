#include "support/registry_value.h"

#include "common/wide_text.h"
#include "foundation/owner.h"

namespace tarnwick::tests {
namespace {

constexpr DWORD kLongestValue = 65536;

RegistryHandle Opened(const std::string& key, REGSAM view) {
  const HKEY root = key.starts_with("HKEY_LOCAL_MACHINE") ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  RegistryHandle opened;
  RegOpenKeyExW(root, common::Wide(key.substr(key.find('\\') + 1)).c_str(), 0, KEY_READ | view,
                opened.Receive());
  return opened;
}

}  // namespace

std::optional<RegistryValue> ReadRegistryValue(const std::string& key, const std::string& name, REGSAM view) {
  const RegistryHandle opened = Opened(key, view);
  if (!opened) return std::nullopt;
  RegistryValue value{0, std::string(kLongestValue, '\0')};
  DWORD size = kLongestValue;
  if (RegQueryValueExW(opened.Get(), common::Wide(name).c_str(), nullptr, &value.type,
                       reinterpret_cast<BYTE*>(value.bytes.data()), &size) != ERROR_SUCCESS)
    return std::nullopt;
  value.bytes.resize(size);
  return value;
}

bool RegistryKeyExists(const std::string& key, REGSAM view) { return static_cast<bool>(Opened(key, view)); }

}  // namespace tarnwick::tests
