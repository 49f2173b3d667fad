// Edge: registry access by key text.
#include "matching/registry.h"

#include "foundation/conversions.h"
#include "foundation/registry_value_reader.h"

#include <optional>
#include <stdexcept>

namespace tarnwick {
namespace {

struct Hive {
  RegistryRoot root;
  // Where the subkey's text begins. Kept: the first hive's cut drops the character behind its name, whatever it
  // is (docs/decisions/registry-lookups.md).
  size_t cut;
};

constexpr Hive kHives[] = {{RegistryRoot::kLocalMachine, 19},
                           {RegistryRoot::kCurrentUser, 17},
                           {RegistryRoot::kUsers, 10},
                           {RegistryRoot::kClassesRoot, 17}};

// UTF-8, else the ANSI code page, else byte by byte.
std::wstring NameToWide(const std::string& text) {
  std::wstring wide = Utf8ToWide(text);
  if (wide.empty()) wide = AnsiToWide(text);
  if (wide.empty()) wide = WidenBytes(text.data(), text.data() + text.size());
  return wide;
}

RegistryKey OpenKeyInView(const std::string& keyText, RegistryView view) {
  RegistryRoot root = RegistryRoot::kLocalMachine;
  std::string subkey;
  if (!ParseRegistryPath(keyText, root, subkey)) return {};
  return OpenKey(root, NameToWide(subkey), view);
}

// The native view first; the two named views only for keys of the machine that don't exist in it.
RegistryKey OpenKeyInSomeView(const std::string& keyText) {
  RegistryRoot root = RegistryRoot::kLocalMachine;
  std::string subkey;
  if (!ParseRegistryPath(keyText, root, subkey)) return {};
  const std::wstring wide = NameToWide(subkey);
  RegistryKey key = OpenKey(root, wide, RegistryView::kNative);
  if (root != RegistryRoot::kLocalMachine) return key;
  for (const RegistryView view : {RegistryView::k64, RegistryView::k32}) {
    if (!key) key = OpenKey(root, wide, view);
  }
  return key;
}

std::optional<std::wstring> DecodeText(const RegistryValue& value) {
  const std::optional<std::u16string> text = DecodeRegistryText(value.type, value.bytes);
  if (!text) return std::nullopt;
  return std::wstring(text->begin(), text->end());
}

// A text that can't be converted is no more than an unreadable value here.
std::string ToUtf8Or(const std::wstring& text, const std::string& defaultText) {
  try {
    return WideToUtf8(text);
  } catch (const std::length_error&) {
    return defaultText;
  }
}

}  // namespace

bool ParseRegistryPath(const std::string& text, RegistryRoot& root, std::string& subkey) {
  for (const Hive& hive : kHives) {
    if (!text.starts_with(NameOf(hive.root))) continue;
    root = hive.root;
    subkey = text.size() > hive.cut ? text.substr(hive.cut) : std::string();
    if (subkey.starts_with('\\')) subkey.erase(0, 1);
    return true;
  }
  return false;
}

std::string ReadRegistryString(const std::string& keyText, const std::string& valueName,
                               const std::string& defaultText) {
  const RegistryKey key = OpenKeyInSomeView(keyText);
  const std::optional<RegistryValue> value = ReadTextValue(key, NameToWide(valueName));
  const std::optional<std::wstring> text = value ? DecodeText(*value) : std::nullopt;
  return text ? ToUtf8Or(*text, defaultText) : defaultText;
}

uint32_t ReadRegistryDword(const std::string& keyText, const std::string& valueName) {
  const RegistryKey key = OpenKeyInSomeView(keyText);
  const std::optional<RegistryNumber> value = ReadNumberValue(key, NameToWide(valueName));
  return value && value->type == kRegistryNumber ? value->number : 0;
}

std::vector<std::string> EnumRegistrySubKeys(const std::string& keyText, RegistryView view) {
  std::vector<std::string> names;
  for (const std::wstring& name : ListSubkeys(OpenKeyInView(keyText, view)).names) {
    names.push_back(ToUtf8Or(name, ""));
  }
  return names;
}

RegistryValues EnumRegistryValues(const std::string& keyText, RegistryView view) {
  RegistryValues values;
  for (const NamedValue& value : ListValues(OpenKeyInView(keyText, view))) {
    values[ToUtf8Or(value.name, "")] = ToUtf8Or(DecodeText(value.value).value_or(L""), "");
  }
  return values;
}

std::string ValueOrEmpty(const RegistryValues& values, const std::string& name) {
  const auto found = values.find(name);
  return found == values.end() ? std::string() : found->second;
}

std::string ExpandUserHive(const std::string& keyText, const std::string& userText) {
  const std::string hive = "HKEY_CURRENT_USER";
  if (userText.empty() || !keyText.starts_with(hive)) return keyText;
  return "HKEY_USERS\\" + userText + keyText.substr(hive.size());
}

std::string FindInstallValueByDisplayName(const GameSignature& signature, const std::string& keyText,
                                          const std::string& valueName) {
  RegistryRoot root = RegistryRoot::kLocalMachine;
  std::string subkey;
  if (!ParseRegistryPath(keyText, root, subkey)) return {};
  // Kept: the names are looked up beside the key's last component, and below the key only where the text ends
  // in a backslash (docs/decisions/registry-lookups.md).
  const size_t lastSeparator = keyText.rfind('\\');
  const std::string prefix =
      lastSeparator == std::string::npos ? keyText + '\\' : keyText.substr(0, lastSeparator + 1);
  for (const std::string& name : ListNarrowSubkeys(OpenNarrowKey(root, subkey, RegistryView::kNative))) {
    if (ReadRegistryString(prefix + name, "DisplayName", "") != signature.DisplayName) continue;
    return ReadRegistryString(prefix + name, valueName.empty() ? "InstallLocation" : valueName, "");
  }
  return {};
}

std::wstring WidenBytes(const char* begin, const char* end) {
  std::wstring wide;
  for (; begin != end; ++begin) wide += static_cast<wchar_t>(static_cast<unsigned char>(*begin));
  return wide;
}

}  // namespace tarnwick
