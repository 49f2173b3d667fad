// Edge: writes the registry, in the view asked for.
#include "desktop/registry_maker.h"

#include "common/wide_text.h"
#include "desktop/windows_calls.h"
#include "foundation/owner.h"

#include <algorithm>
#include <array>

namespace tarnwick::desktop {
namespace {

struct Hive {
  const char* name;
  HKEY root;
};

struct KeyPlace {
  HKEY root;
  std::wstring subkey;
};

KeyPlace PlaceOf(const std::string& key) {
  static const std::array<Hive, 5> hives = {{{"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
                                             {"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                                             {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT},
                                             {"HKEY_USERS", HKEY_USERS},
                                             {"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG}}};
  const size_t end = key.find('\\');
  const std::string name = key.substr(0, end);
  for (const Hive& hive : hives)
    if (name == hive.name)
      return {hive.root, end == std::string::npos ? L"" : common::Wide(key.substr(end + 1))};
  throw std::runtime_error("not a registry key with a hive's long name: " + key);
}

REGSAM ViewFlag(View view) {
  return view == View::k32 ? KEY_WOW64_32KEY : view == View::k64 ? KEY_WOW64_64KEY : 0;
}

// Creates one level; true if it wasn't there.
bool CreateLevel(const KeyPlace& place, const std::wstring& subkey, View view, const std::string& text) {
  RegistryHandle key;
  DWORD disposition = 0;
  const LSTATUS status = RegCreateKeyExW(place.root, subkey.c_str(), 0, nullptr, 0, KEY_READ | ViewFlag(view),
                                         nullptr, key.Receive(), &disposition);
  if (status != ERROR_SUCCESS) throw WindowsError("can't make the key", text, static_cast<DWORD>(status));
  return disposition == REG_CREATED_NEW_KEY;
}

RegistryHandle OpenKey(const std::string& text, View view, REGSAM access) {
  const KeyPlace place = PlaceOf(text);
  RegistryHandle key;
  RegOpenKeyExW(place.root, place.subkey.c_str(), 0, access | ViewFlag(view), key.Receive());
  return key;
}

std::optional<OldContent> ReadOldValue(HKEY key, const std::wstring& name) {
  DWORD type = 0;
  DWORD size = 0;
  if (RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
    return std::nullopt;
  OldContent old;
  old.bytes.resize(size);
  if (size > 0)
    RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(old.bytes.data()), &size);
  old.type = type;
  return old;
}

void WriteValue(HKEY key, const std::wstring& name, uint32_t type, std::string_view bytes,
                const std::string& text) {
  // Some Windows versions refuse a null pointer even for no bytes.
  const BYTE none = 0;
  const BYTE* data = bytes.empty() ? &none : reinterpret_cast<const BYTE*>(bytes.data());
  const LSTATUS status = RegSetValueExW(key, name.c_str(), 0, type, data, static_cast<DWORD>(bytes.size()));
  if (status != ERROR_SUCCESS) throw WindowsError("can't write the value", text, static_cast<DWORD>(status));
}

std::string ValueText(const std::string& key, const std::string& name) { return key + " -> " + name; }

void UnmakeValue(const MadeThing& thing) {
  const RegistryHandle key = OpenKey(thing.place, thing.view, KEY_SET_VALUE);
  if (!key) return;
  const std::wstring name = common::Wide(thing.name);
  const std::string text = ValueText(thing.place, thing.name);
  if (thing.before) {
    WriteValue(key.Get(), name, thing.before->type, thing.before->bytes, text);
    return;
  }
  const LSTATUS status = RegDeleteValueW(key.Get(), name.c_str());
  if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
    throw WindowsError("can't remove the value", text, static_cast<DWORD>(status));
}

bool HoldsAnything(HKEY key) {
  DWORD subkeys = 0;
  DWORD values = 0;
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr,
                   nullptr, nullptr);
  return subkeys > 0 || values > 0;
}

void UnmakeKey(const MadeThing& thing) {
  {
    const RegistryHandle key = OpenKey(thing.place, thing.view, KEY_READ);
    if (!key || HoldsAnything(key.Get())) return;
  }
  const KeyPlace place = PlaceOf(thing.place);
  const LSTATUS status = RegDeleteKeyExW(place.root, place.subkey.c_str(), ViewFlag(thing.view), 0);
  if (status != ERROR_SUCCESS)
    throw WindowsError("can't remove the key", thing.place, static_cast<DWORD>(status));
}

}  // namespace

void MakeKey(const std::string& text, View view, Journal& journal) {
  std::string tidy = text;
  while (tidy.ends_with('\\')) tidy.pop_back();
  const KeyPlace place = PlaceOf(tidy);
  const size_t hiveEnd = tidy.find('\\');
  if (hiveEnd == std::string::npos) return;
  // Level by level, since only the levels that were missing may go again.
  for (size_t end = tidy.find('\\', hiveEnd + 1);; end = tidy.find('\\', end + 1)) {
    const std::string level = tidy.substr(0, end);
    if (CreateLevel(place, common::Wide(level.substr(hiveEnd + 1)), view, level))
      journal.push_back({MadeThing::Kind::kKey, level, {}, view, {}});
    if (end == std::string::npos) return;
  }
}

void MakeValue(const std::string& text, const std::string& name, View view, uint32_t type,
               std::string_view bytes, bool known, Journal& journal) {
  MakeKey(text, view, journal);
  const RegistryHandle key = OpenKey(text, view, KEY_READ | KEY_SET_VALUE);
  if (!key) throw std::runtime_error("can't open the key '" + text + "' for writing");
  const std::wstring wide = common::Wide(name);
  const std::optional<OldContent> before = known ? std::nullopt : ReadOldValue(key.Get(), wide);
  WriteValue(key.Get(), wide, type, bytes, ValueText(text, name));
  if (!known) journal.push_back({MadeThing::Kind::kValue, text, name, view, before});
}

void UnmakeRegistry(const MadeThing& thing) {
  thing.kind == MadeThing::Kind::kValue ? UnmakeValue(thing) : UnmakeKey(thing);
}

}  // namespace tarnwick::desktop
