// Edge: registry access by key text.
#include "matching/registry.h"

#include "foundation/conversions.h"
#include "foundation/owner.h"
#include "matching/registry_value_reader.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace tarnwick {
namespace {

struct Hive {
  std::string name;
  HKEY root;
  size_t cut;  // where the subkey text begins: kept, the first hive's cut drops the character behind its name
};

const std::vector<Hive>& Hives() {
  static const std::vector<Hive> hives = {{"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE, 19},
                                          {"HKEY_CURRENT_USER", HKEY_CURRENT_USER, 17},
                                          {"HKEY_USERS", HKEY_USERS, 10},
                                          {"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT, 17}};
  return hives;
}

// UTF-8, else the ANSI code page, else byte by byte.
std::wstring NameToWide(const std::string& text) {
  std::wstring wide = Utf8ToWide(text);
  if (wide.empty()) wide = AnsiToWide(text);
  if (wide.empty()) wide = WidenBytes(text.data(), text.data() + text.size());
  return wide;
}

// An open that fails owns nothing, whatever it left in its result.
RegistryKey Opened(LSTATUS status, HKEY key) { return RegistryKey(status == ERROR_SUCCESS ? key : nullptr); }

RegistryKey OpenKey(HKEY root, const std::string& subkey, REGSAM access) {
  const std::wstring wide = NameToWide(subkey);
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(root, subkey.empty() ? nullptr : wide.c_str(), 0, access, &key);
  return Opened(status, key);
}

// The native view first; the two named views only for keys of the machine that don't exist in it.
RegistryKey OpenKeyInSomeView(const std::string& keyText) {
  HKEY root = nullptr;
  std::string subkey;
  if (!ParseRegistryPath(keyText, root, subkey)) return {};
  RegistryKey key = OpenKey(root, subkey, KEY_READ);
  if (root != HKEY_LOCAL_MACHINE) return key;
  for (const REGSAM view : {REGSAM{KEY_WOW64_64KEY}, REGSAM{KEY_WOW64_32KEY}}) {
    if (!key) key = OpenKey(root, subkey, KEY_READ | view);
  }
  return key;
}

RegistryKey OpenKeyInView(const std::string& keyText, bool use64) {
  HKEY root = nullptr;
  std::string subkey;
  if (!ParseRegistryPath(keyText, root, subkey)) return {};
  return OpenKey(root, subkey, KEY_READ | (use64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY));
}

static_assert(kRegistryText == REG_SZ && kRegistryExpandableText == REG_EXPAND_SZ);

std::optional<std::wstring> DecodeText(DWORD type, const BYTE* bytes, size_t length) {
  const std::optional<std::u16string> text = DecodeRegistryText(type, {bytes, length});
  if (!text) return std::nullopt;
  return std::wstring(text->begin(), text->end());
}

// Nothing for a value that is missing or no text.
std::optional<std::wstring> QueryText(HKEY key, const std::wstring& name) {
  DWORD type = 0;
  DWORD length = 0;
  const LSTATUS status = RegQueryValueExW(key, name.c_str(), nullptr, &type, nullptr, &length);
  if (status != ERROR_SUCCESS || !IsRegistryTextType(type)) return std::nullopt;
  // Room for a few units more: the value may have grown since its size was asked for.
  std::vector<BYTE> bytes((length / 2 + 4) * sizeof(wchar_t));
  length = static_cast<DWORD>(bytes.size());
  if (RegQueryValueExW(key, name.c_str(), nullptr, &type, bytes.data(), &length) != ERROR_SUCCESS)
    return std::nullopt;
  return DecodeText(type, bytes.data(), std::min<size_t>(length, bytes.size() - sizeof(wchar_t)));
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

bool ParseRegistryPath(const std::string& text, HKEY& root, std::string& subkey) {
  for (const Hive& hive : Hives()) {
    if (!text.starts_with(hive.name)) continue;
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
  if (!key) return defaultText;
  const std::optional<std::wstring> text = QueryText(key.Get(), NameToWide(valueName));
  return text ? ToUtf8Or(*text, defaultText) : defaultText;
}

uint32_t ReadRegistryDword(const std::string& keyText, const std::string& valueName) {
  const RegistryKey key = OpenKeyInSomeView(keyText);
  if (!key) return 0;
  DWORD type = 0;
  DWORD value = 0;
  DWORD bytes = sizeof(value);
  const LSTATUS status = RegQueryValueExW(key.Get(), NameToWide(valueName).c_str(), nullptr, &type,
                                          reinterpret_cast<BYTE*>(&value), &bytes);
  return status == ERROR_SUCCESS && type == REG_DWORD ? value : 0;
}

std::vector<std::string> EnumRegistrySubKeys(const std::string& keyText, bool use64) {
  std::vector<std::string> names;
  const RegistryKey key = OpenKeyInView(keyText, use64);
  if (!key) return names;
  for (DWORD index = 0;; ++index) {
    wchar_t name[256];
    DWORD length = 256;
    if (RegEnumKeyExW(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      break;
    names.push_back(ToUtf8Or(name, ""));
  }
  return names;
}

std::map<std::string, std::string> EnumRegistryValues(const std::string& keyText, bool use64) {
  std::map<std::string, std::string> values;
  const RegistryKey key = OpenKeyInView(keyText, use64);
  if (!key) return values;
  for (DWORD index = 0;; ++index) {
    wchar_t name[512];
    DWORD nameLength = 512;
    BYTE data[4096];
    DWORD dataLength = sizeof(data);
    DWORD type = 0;
    // Kept: a value too long for the buffer ends the list, as the last one does.
    if (RegEnumValueW(key.Get(), index, name, &nameLength, nullptr, &type, data, &dataLength) !=
        ERROR_SUCCESS)
      break;
    values[ToUtf8Or(name, "")] = ToUtf8Or(DecodeText(type, data, dataLength).value_or(L""), "");
  }
  return values;
}

std::string ExpandUserHive(const std::string& keyText, const std::string& userText) {
  const std::string hive = "HKEY_CURRENT_USER";
  if (userText.empty() || !keyText.starts_with(hive)) return keyText;
  return "HKEY_USERS\\" + userText + keyText.substr(hive.size());
}

std::string FindInstallValueByDisplayName(const GameSignature& signature, const std::string& keyText,
                                          const std::string& valueName) {
  HKEY root = nullptr;
  std::string subkey;
  if (!ParseRegistryPath(keyText, root, subkey)) return {};
  HKEY opened = nullptr;
  const LSTATUS status = RegOpenKeyExA(root, subkey.c_str(), 0, KEY_READ, &opened);
  const RegistryKey key = Opened(status, opened);
  if (!key) return {};
  // Kept: the names are looked up beside the key's last component, and below the key only where the text ends
  // in a backslash.
  const size_t lastSeparator = keyText.rfind('\\');
  const std::string prefix =
      lastSeparator == std::string::npos ? keyText + '\\' : keyText.substr(0, lastSeparator + 1);
  for (DWORD index = 0;; ++index) {
    char name[256];
    DWORD length = 256;
    if (RegEnumKeyExA(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      return {};
    const std::string entry = prefix + name;
    if (ReadRegistryString(entry, "DisplayName", "") != signature.DisplayName) continue;
    return ReadRegistryString(entry, valueName.empty() ? "InstallLocation" : valueName, "");
  }
}

std::wstring WidenBytes(const char* begin, const char* end) {
  std::wstring wide;
  for (; begin != end; ++begin) wide += static_cast<wchar_t>(static_cast<unsigned char>(*begin));
  return wide;
}

}  // namespace tarnwick
