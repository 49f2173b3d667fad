#pragma once
// The registry: opening keys, reading values, listing what a key holds. Names are UTF-16 as Windows takes
// them; the narrow forms take and give bytes of the ANSI code page. Nothing here throws for a registry
// failure. All of it is safe on any thread; a key belongs to whoever opened it.

#include "foundation/machine/observer.h"
#include "foundation/owner_template.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

enum class RegistryRoot { kLocalMachine, kCurrentUser, kUsers, kClassesRoot };

// Such as "HKEY_LOCAL_MACHINE".
const char* NameOf(RegistryRoot root);

struct RegistryKeyTraits {
  using Value = void*;
  static Value None() { return nullptr; }
  static void Close(Value key);
};

// An open key, or none and the error that says why.
struct RegistryKey {
  Owner<RegistryKeyTraits> handle = {};
  int32_t error = 0;
  std::string text = {};  // what an observer knows it by; empty while nobody listens
  RegistryView view = RegistryView::kNative;

  explicit operator bool() const { return static_cast<bool>(handle); }
};

// Opens for reading (RegOpenKeyExW). An empty subkey is the root itself.
RegistryKey OpenKey(RegistryRoot root, const std::wstring& subkey, RegistryView view);

// A direct subkey, by plain KEY_READ.
RegistryKey OpenSubkey(const RegistryKey& parent, const std::wstring& name);

// RegOpenKeyExA; the text goes to the call as it is.
RegistryKey OpenNarrowKey(RegistryRoot root, const std::string& subkey, RegistryView view);

// The functions below give nothing for a key that isn't open.

struct RegistryValue {
  uint32_t type = 0;
  std::vector<unsigned char> bytes = {};
};

// A REG_SZ or REG_EXPAND_SZ value of up to `largest` bytes. The bytes are what the registry holds: it
// promises neither a terminator nor an even length.
std::optional<RegistryValue> ReadTextValue(const RegistryKey& key, const std::wstring& name,
                                           uint32_t largest = std::numeric_limits<uint32_t>::max());

struct RegistryNumber {
  uint32_t type = 0;
  uint32_t number = 0;
};

// A value of up to four bytes, whatever its type, as a little-endian number.
std::optional<RegistryNumber> ReadNumberValue(const RegistryKey& key, const std::wstring& name);

// A value of up to `room` bytes (RegQueryValueExA).
std::optional<RegistryValue> ReadNarrowValue(const RegistryKey& key, const std::string& name, uint32_t room);

// The direct subkeys, in the order of the registry.
struct SubkeyList {
  std::vector<std::wstring> names = {};
  int32_t error = 0;  // what ended the list; kNoMoreItems behind the last subkey
};
inline constexpr int32_t kNoMoreItems = 259;
SubkeyList ListSubkeys(const RegistryKey& key);

// RegEnumKeyExA; ends at the first failure, as at the end.
std::vector<std::string> ListNarrowSubkeys(const RegistryKey& key);

struct NamedValue {
  std::wstring name;
  RegistryValue value;
};

// The key's values, up to the first of more than 4096 bytes or with a name of more than 511 units.
std::vector<NamedValue> ListValues(const RegistryKey& key);

}  // namespace tarnwick
