// Edge: the registry.
#include "host/capture/registry_copy.h"

#include <algorithm>
#include <cstring>

#include "common/wide_text.h"
#include "foundation/owner.h"
#include "host/capture/system_places.h"

namespace tarnwick::host {
namespace {

struct Hive {
  const char* name;
  HKEY key;
};

HKEY HiveOf(const std::string& name) {
  const Hive hives[] = {{"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                        {"HKEY_USERS", HKEY_USERS},
                        {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT}};
  const auto* const found = std::ranges::find_if(hives, [&](const Hive& hive) { return name == hive.name; });
  return found == std::end(hives) ? HKEY_LOCAL_MACHINE : found->key;
}

REGSAM AccessOf(RegistryView view) {
  if (view == RegistryView::k64) return KEY_READ | KEY_WOW64_64KEY;
  return view == RegistryView::k32 ? KEY_READ | KEY_WOW64_32KEY : KEY_READ;
}

RegistryHandle Open(const KeyPlace& place) {
  RegistryHandle key;
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HiveOf(place.hive), place.subkey.c_str(), 0, AccessOf(place.view), &opened) ==
      ERROR_SUCCESS)
    key = RegistryHandle(opened);
  return key;
}

struct RawValue {
  DWORD type = 0;
  std::string bytes;
};

std::optional<RawValue> ReadRaw(HKEY key, const std::wstring& name) {
  RawValue value;
  DWORD size = 0;
  LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, nullptr, nullptr, &size);
  do {
    value.bytes.resize(size);
    status = RegQueryValueExW(key, name.c_str(), nullptr, &value.type,
                              reinterpret_cast<BYTE*>(value.bytes.data()), &size);
  } while (status == ERROR_MORE_DATA);
  if (status != ERROR_SUCCESS) return std::nullopt;
  value.bytes.resize(size);
  return value;
}

// The text, if the bytes are that and one terminator.
std::optional<std::string> PlainText(const std::string& bytes) {
  if (bytes.size() < sizeof(wchar_t) || bytes.size() % sizeof(wchar_t) != 0) return std::nullopt;
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), bytes.size());
  if (text.find(L'\0') != text.size() - 1) return std::nullopt;
  text.pop_back();
  std::string narrow = common::Narrow(text);
  return common::Wide(narrow) == text ? std::optional(narrow) : std::nullopt;
}

ValueCopy CopyOf(const std::wstring& name, RawValue raw) {
  ValueCopy copy{common::Narrow(name), raw.type, {}, {}, {}};
  if (raw.type == REG_SZ || raw.type == REG_EXPAND_SZ) copy.text = PlainText(raw.bytes);
  if (raw.type == REG_DWORD && raw.bytes.size() == sizeof(uint32_t)) {
    uint32_t number = 0;
    std::memcpy(&number, raw.bytes.data(), sizeof number);
    copy.number = number;
  }
  if (!copy.text && !copy.number) copy.bytes = std::move(raw.bytes);
  return copy;
}

std::vector<std::wstring> ValueNames(HKEY key) {
  constexpr DWORD kLongestName = 16384;
  std::vector<std::wstring> names;
  std::vector<wchar_t> name(kLongestName);
  for (DWORD index = 0;; ++index) {
    DWORD length = kLongestName;
    if (RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      return names;
    names.emplace_back(name.data(), length);
  }
}

// Values are spelled as the key has them, and stand once each.
std::vector<ValueCopy> CopyValues(HKEY key, const AskedKey& asked) {
  std::set<std::wstring> wanted;
  for (const std::wstring& name : asked.values) wanted.insert(LowerText(name));
  std::vector<ValueCopy> values;
  for (const std::wstring& name : ValueNames(key)) {
    if (!asked.allValues && wanted.count(LowerText(name)) == 0) continue;
    std::optional<RawValue> raw = ReadRaw(key, name);
    if (raw && raw->bytes.size() <= kMostValueBytes) values.push_back(CopyOf(name, std::move(*raw)));
  }
  return values;
}

std::string TextOf(const KeyPlace& place) {
  return place.subkey.empty() ? place.hive : place.hive + '\\' + common::Narrow(place.subkey);
}

using AskedKeys = std::map<KeyPlace, AskedKey, KeyOrder>;

// Subkeys that were listed are there for it. Their own spelling counts.
void AddSubkeys(AskedKeys& keys, const KeyPlace& parent) {
  for (const std::wstring& name : SubkeysOf(parent)) {
    const KeyPlace place{parent.hive, parent.subkey.empty() ? name : parent.subkey + L'\\' + name,
                         parent.view};
    auto node = keys.extract(place);
    if (node.empty())
      keys.try_emplace(place);
    else {
      node.key() = place;
      keys.insert(std::move(node));
    }
  }
}

AskedKeys WithSubkeys(const AskedKeys& asked) {
  AskedKeys keys = asked;
  for (const auto& [place, key] : asked) {
    if (key.subkeys) AddSubkeys(keys, place);
  }
  return keys;
}

}  // namespace

KeyCopies CopyKeys(const AskedPlaces& places, const KeyTest& leftOut) {
  KeyCopies copies;
  for (const auto& [place, asked] : WithSubkeys(places.keys)) {
    if (leftOut(place) || IsSystemKey(place)) continue;
    const RegistryHandle key = Open(place);
    if (key)
      copies.keys.push_back({TextOf(place), place.view, CopyValues(key.Get(), asked)});
    else if (asked.meant)
      copies.missing.push_back(TextOf(place));
  }
  return copies;
}

std::vector<std::wstring> SubkeysOf(const KeyPlace& place) {
  std::vector<std::wstring> names;
  const RegistryHandle key = Open(place);
  for (DWORD index = 0; key; ++index) {
    wchar_t name[256];
    DWORD length = 256;
    if (RegEnumKeyExW(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      break;
    names.emplace_back(name, length);
  }
  return names;
}

std::wstring TextValueOf(const KeyPlace& place, const wchar_t* name) {
  const RegistryHandle key = Open(place);
  const std::optional<RawValue> raw = key ? ReadRaw(key.Get(), name) : std::nullopt;
  if (!raw || (raw->type != REG_SZ && raw->type != REG_EXPAND_SZ)) return {};
  std::wstring text(raw->bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), raw->bytes.data(), text.size() * sizeof(wchar_t));
  return text.substr(0, text.find(L'\0'));
}

}  // namespace tarnwick::host
