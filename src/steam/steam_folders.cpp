// Edge: Steam's folder in the registry.
#include "steam/steam_folders.h"

#include "foundation/conversions.h"
#include "foundation/registry_value_reader.h"
#include "matching/registry.h"

#include <initializer_list>
#include <optional>

namespace tarnwick {
namespace {

struct Place {
  const char* key;
  const char* value;
};

constexpr Place kMachine32 = {"HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Valve\\Steam", "InstallPath"};
constexpr Place kMachine = {"HKEY_LOCAL_MACHINE\\SOFTWARE\\Valve\\Steam", "InstallPath"};
constexpr Place kUser = {"HKEY_CURRENT_USER\\SOFTWARE\\Valve\\Steam", "SteamPath"};

std::string FirstText(std::initializer_list<Place> places) {
  for (const Place& place : places) {
    std::string text = ReadRegistryString(place.key, place.value, "");
    if (!text.empty()) return text;
  }
  return {};
}

RegistryKey OpenMachineKey(const char* subkey) {
  return OpenNarrowKey(RegistryRoot::kLocalMachine, subkey, RegistryView::kNative);
}

}  // namespace

// Kept apart from the three functions below, each of which asks in another order
// (docs/decisions/steam-lookups.md).
std::string GetSteamInstallPath() { return FirstText({kMachine32, kMachine, kUser}); }

// Kept apart: the reverse of the other two, and without the user's key (docs/decisions/steam-lookups.md).
std::string GetAppInfoSteamPath() { return FirstText({kMachine, kMachine32}); }

// Kept apart: as the games scan asks, but without the user's key (docs/decisions/steam-lookups.md).
std::string GetDefaultIdSteamPath() { return FirstText({kMachine32, kMachine}); }

// Kept apart: decides by the key and not by the value, takes no REG_EXPAND_SZ, and knows no other view of the
// registry (docs/decisions/steam-lookups.md).
std::string GetShortcutsSteamPath() {
  RegistryKey key = OpenMachineKey("SOFTWARE\\WOW6432Node\\Valve\\Steam");
  if (!key) key = OpenMachineKey("SOFTWARE\\Valve\\Steam");
  constexpr uint32_t kRoom = 260;
  const std::optional<RegistryValue> value = ReadNarrowValue(key, "InstallPath", kRoom);
  if (!value || value->type != kRegistryText) return {};
  const std::string stored(value->bytes.begin(), value->bytes.end());  // the registry promises no terminator
  return AnsiToUtf8(stored.substr(0, stored.find('\0')));
}

}  // namespace tarnwick
