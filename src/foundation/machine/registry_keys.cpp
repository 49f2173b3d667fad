// Edge: the registry's calls.
#include "foundation/machine/registry_keys.h"

#include "foundation/conversions.h"
#include "foundation/registry_value_reader.h"
#include "foundation/windows_api.h"

#include <algorithm>
#include <cstring>

namespace tarnwick {
namespace {

using machine::AskMachine;

static_assert(kNoMoreItems == ERROR_NO_MORE_ITEMS);
static_assert(kRegistryText == REG_SZ && kRegistryExpandableText == REG_EXPAND_SZ &&
              kRegistryNumber == REG_DWORD);

struct Root {
  const char* name;
  HKEY key;
};

Root RootOf(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::kCurrentUser:
      return {"HKEY_CURRENT_USER", HKEY_CURRENT_USER};
    case RegistryRoot::kUsers:
      return {"HKEY_USERS", HKEY_USERS};
    case RegistryRoot::kClassesRoot:
      return {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT};
    default:
      return {"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE};
  }
}

REGSAM AccessOf(RegistryView view) {
  switch (view) {
    case RegistryView::k64:
      return KEY_READ | KEY_WOW64_64KEY;
    case RegistryView::k32:
      return KEY_READ | KEY_WOW64_32KEY;
    default:
      return KEY_READ;
  }
}

HKEY HandleOf(const RegistryKey& key) { return static_cast<HKEY>(key.handle.Get()); }

std::string Below(const std::string& parent, const std::string& name) {
  return name.empty() ? parent : parent + '\\' + name;
}

// Why a question got nothing, for the observer alone.
Answer Error(LSTATUS status) { return {false, "error " + std::to_string(status)}; }

Question OpenQuestion(const std::string& keyText, RegistryView view, const char* form) {
  return {QuestionKind::kOpenKey, keyText, form, view, {}};
}

Question KeyQuestion(QuestionKind kind, const RegistryKey& key, const std::string& detail) {
  return {kind, key.text, detail, key.view, {}};
}

RegistryKey DeniedKey() {
  RegistryKey key;
  key.error = ERROR_ACCESS_DENIED;
  return key;
}

// `open` makes the call, and takes the address that the key is written to. `describe` is asked for the text
// only while somebody listens.
template <class Describe, class Open>
RegistryKey Opened(Describe&& describe, RegistryView view, Open&& open) {
  std::string text;
  RegistryKey opened = AskMachine(
      [&] {
        const Question question = describe();
        text = question.subject;
        return question;
      },
      DeniedKey,
      [&] {
        RegistryKey key;
        HKEY handle = nullptr;
        key.error = static_cast<int32_t>(open(&handle));
        // A call that failed leaves no key to close, whatever it wrote there.
        if (key.error == ERROR_SUCCESS) key.handle = Owner<RegistryKeyTraits>(handle);
        return key;
      },
      [](const RegistryKey& key) { return key ? Answer{true, ""} : Error(key.error); });
  opened.text = std::move(text);
  opened.view = view;
  return opened;
}

std::string TextOf(const std::string& narrow) { return narrow; }
std::string TextOf(const std::wstring& wide) { return WideToUtf8(wide); }

// The value's text, its number, or for other types the count of its bytes.
Answer TellValue(const RegistryValue& value) {
  if (!IsRegistryTextType(value.type)) return {true, std::to_string(value.bytes.size()) + " bytes"};
  std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), value.bytes.data(), text.size() * sizeof(wchar_t));
  return {true, WideToUtf8(text)};
}

template <class Value, class Tell>
Answer TellOptional(const std::optional<Value>& value, Tell&& tell) {
  return value ? tell(*value) : Answer{false, "no such value"};
}

template <class Names>
Answer TellNames(const Names& names) {
  Answer answer{true, {}};
  for (const auto& name : names) answer.text += TextOf(name) + '\n';
  return answer;
}

std::optional<RegistryValue> QueryText(HKEY key, const std::wstring& name, uint32_t largest) {
  RegistryValue value;
  DWORD type = 0;
  DWORD length = 0;
  const LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &length);
  if (status != ERROR_SUCCESS || !IsRegistryTextType(type) || length > largest) return std::nullopt;
  // Room for a few units more: the value may have grown since its size was asked for.
  value.bytes.resize((length / 2 + 4) * sizeof(wchar_t));
  length = static_cast<DWORD>(value.bytes.size());
  if (RegQueryValueExW(key, name.c_str(), nullptr, &type, value.bytes.data(), &length) != ERROR_SUCCESS)
    return std::nullopt;
  value.type = type;
  value.bytes.resize(std::min<size_t>(length, value.bytes.size() - sizeof(wchar_t)));
  return value;
}

std::optional<RegistryNumber> QueryNumber(HKEY key, const std::wstring& name) {
  DWORD type = 0;
  DWORD number = 0;
  DWORD bytes = sizeof(number);
  const LSTATUS status =
      RegQueryValueExW(key, name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(&number), &bytes);
  if (status != ERROR_SUCCESS) return std::nullopt;
  return RegistryNumber{type, number};
}

std::optional<RegistryValue> QueryNarrow(HKEY key, const std::string& name, uint32_t room) {
  RegistryValue value{0, std::vector<unsigned char>(room)};
  DWORD type = 0;
  DWORD length = room;
  if (RegQueryValueExA(key, name.c_str(), nullptr, &type, value.bytes.data(), &length) != ERROR_SUCCESS)
    return std::nullopt;
  value.type = type;
  value.bytes.resize(length);
  return value;
}

SubkeyList EnumerateSubkeys(HKEY key) {
  SubkeyList list;
  for (DWORD index = 0;; ++index) {
    wchar_t name[512] = {};
    DWORD length = 511;
    list.error =
        static_cast<int32_t>(RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr));
    if (list.error != ERROR_SUCCESS) return list;
    list.names.emplace_back(name);
  }
}

std::vector<std::string> EnumerateNarrowSubkeys(HKEY key) {
  std::vector<std::string> names;
  for (DWORD index = 0;; ++index) {
    char name[256];
    DWORD length = sizeof(name);
    if (RegEnumKeyExA(key, index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      return names;
    names.emplace_back(name);
  }
}

std::vector<NamedValue> EnumerateValues(HKEY key) {
  std::vector<NamedValue> values;
  for (DWORD index = 0;; ++index) {
    wchar_t name[512];
    DWORD nameLength = 512;
    BYTE data[4096];
    DWORD length = sizeof(data);
    DWORD type = 0;
    // Kept: a value too long for the buffer ends the list, as the last one does
    // (docs/decisions/registry-lookups.md).
    if (RegEnumValueW(key, index, name, &nameLength, nullptr, &type, data, &length) != ERROR_SUCCESS)
      return values;
    values.push_back({name, {type, {data, data + length}}});
  }
}

Answer TellValues(const std::vector<NamedValue>& values) {
  Answer answer{true, {}};
  for (const NamedValue& value : values) {
    answer.text += WideToUtf8(value.name) + '=' + TellValue(value.value).text + '\n';
  }
  return answer;
}

}  // namespace

const char* NameOf(RegistryRoot root) { return RootOf(root).name; }

void RegistryKeyTraits::Close(Value key) { RegCloseKey(static_cast<HKEY>(key)); }

RegistryKey OpenKey(RegistryRoot root, const std::wstring& subkey, RegistryView view) {
  const Root hive = RootOf(root);
  return Opened([&] { return OpenQuestion(Below(hive.name, WideToUtf8(subkey)), view, ""); }, view,
                [&](HKEY* key) {
                  return RegOpenKeyExW(hive.key, subkey.empty() ? nullptr : subkey.c_str(), 0, AccessOf(view),
                                       key);
                });
}

RegistryKey OpenSubkey(const RegistryKey& parent, const std::wstring& name) {
  if (!parent) return {};
  return Opened([&] { return OpenQuestion(Below(parent.text, WideToUtf8(name)), parent.view, ""); },
                parent.view,
                [&](HKEY* key) { return RegOpenKeyExW(HandleOf(parent), name.c_str(), 0, KEY_READ, key); });
}

RegistryKey OpenNarrowKey(RegistryRoot root, const std::string& subkey, RegistryView view) {
  const Root hive = RootOf(root);
  return Opened([&] { return OpenQuestion(Below(hive.name, subkey), view, "narrow"); }, view,
                [&](HKEY* key) { return RegOpenKeyExA(hive.key, subkey.c_str(), 0, AccessOf(view), key); });
}

std::optional<RegistryValue> ReadTextValue(const RegistryKey& key, const std::wstring& name,
                                           uint32_t largest) {
  if (!key) return std::nullopt;
  return AskMachine([&] { return KeyQuestion(QuestionKind::kReadValue, key, WideToUtf8(name)); },
                    [] { return std::optional<RegistryValue>(); },
                    [&] { return QueryText(HandleOf(key), name, largest); },
                    [](const auto& value) { return TellOptional(value, TellValue); });
}

std::optional<RegistryNumber> ReadNumberValue(const RegistryKey& key, const std::wstring& name) {
  if (!key) return std::nullopt;
  const auto tell = [](const RegistryNumber& value) { return Answer{true, std::to_string(value.number)}; };
  return AskMachine([&] { return KeyQuestion(QuestionKind::kReadValue, key, WideToUtf8(name)); },
                    [] { return std::optional<RegistryNumber>(); },
                    [&] { return QueryNumber(HandleOf(key), name); },
                    [&](const auto& value) { return TellOptional(value, tell); });
}

std::optional<RegistryValue> ReadNarrowValue(const RegistryKey& key, const std::string& name, uint32_t room) {
  if (!key) return std::nullopt;
  const auto tell = [](const RegistryValue& value) {
    return Answer{true, std::string(value.bytes.begin(), value.bytes.end()).c_str()};
  };
  return AskMachine([&] { return KeyQuestion(QuestionKind::kReadValue, key, name); },
                    [] { return std::optional<RegistryValue>(); },
                    [&] { return QueryNarrow(HandleOf(key), name, room); },
                    [&](const auto& value) { return TellOptional(value, tell); });
}

SubkeyList ListSubkeys(const RegistryKey& key) {
  if (!key) return {};
  return AskMachine([&] { return KeyQuestion(QuestionKind::kListSubkeys, key, ""); },
                    [] { return SubkeyList{{}, ERROR_ACCESS_DENIED}; },
                    [&] { return EnumerateSubkeys(HandleOf(key)); },
                    [](const SubkeyList& list) { return TellNames(list.names); });
}

std::vector<std::string> ListNarrowSubkeys(const RegistryKey& key) {
  if (!key) return {};
  return AskMachine([&] { return KeyQuestion(QuestionKind::kListSubkeys, key, "narrow"); },
                    [] { return std::vector<std::string>(); },
                    [&] { return EnumerateNarrowSubkeys(HandleOf(key)); },
                    TellNames<std::vector<std::string>>);
}

std::vector<NamedValue> ListValues(const RegistryKey& key) {
  if (!key) return {};
  return AskMachine([&] { return KeyQuestion(QuestionKind::kListValues, key, ""); },
                    [] { return std::vector<NamedValue>(); }, [&] { return EnumerateValues(HandleOf(key)); },
                    TellValues);
}

}  // namespace tarnwick
