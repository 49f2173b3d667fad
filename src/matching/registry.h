#pragma once
// The registry by key text, as the catalogue names keys: a hive's long name in upper case, a backslash, a
// subkey. All texts are UTF-8. Nothing here logs or throws for a registry failure, and every call opens and
// closes its own key, so all of it is safe on any thread.

#include "catalogue/game_signature.h"
#include "foundation/machine/registry_keys.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tarnwick {

// False for a text that begins with none of the four hive names. Short names such as HKLM are not known.
bool ParseRegistryPath(const std::string& text, RegistryRoot& root, std::string& subkey);

// The text of a REG_SZ or REG_EXPAND_SZ value, not expanded, up to its first NUL. Reads the native view;
// below HKEY_LOCAL_MACHINE the 64-bit and then the 32-bit view are tried where the key doesn't exist in it.
std::string ReadRegistryString(const std::string& keyText, const std::string& valueName,
                               const std::string& defaultText);

// A REG_DWORD value, 0 if it can't be read. Views as above.
uint32_t ReadRegistryDword(const std::string& keyText, const std::string& valueName);

// Names of the direct subkeys in the order of the registry, from exactly that view.
std::vector<std::string> EnumRegistrySubKeys(const std::string& keyText, RegistryView view);

// All values of a key in one view, by name; values that are not strings have an empty text. The list ends
// early at a value of more than 4096 bytes or a name of more than 511 units.
using RegistryValues = std::map<std::string, std::string>;  // compared byte by byte
RegistryValues EnumRegistryValues(const std::string& keyText, RegistryView view);

// The value's text, or empty if there is no such value.
std::string ValueOrEmpty(const RegistryValues& values, const std::string& name);

// HKEY_CURRENT_USER at the text's start becomes HKEY_USERS\userText, unless userText is empty.
std::string ExpandUserHive(const std::string& keyText, const std::string& userText);

// The install value of the first subkey whose DisplayName is exactly the signature's; `valueName` empty means
// InstallLocation. Subkeys are looked up beside the key's last component unless the text ends in a backslash.
std::string FindInstallValueByDisplayName(const GameSignature& signature, const std::string& keyText,
                                          const std::string& valueName);

// Each byte widened by itself: the last resort for names that are neither UTF-8 nor ANSI.
std::wstring WidenBytes(const char* begin, const char* end);

}  // namespace tarnwick
