// Edge: registry access by key text.
#include "matching/registry.h"

#include "foundation/conversions.h"
#include "foundation/owner.h"

#include <algorithm>

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

RegistryKey OpenKey(HKEY root, const std::string& subkey, REGSAM access) {
  const std::wstring wide = NameToWide(subkey);
  RegistryKey key;
  if (RegOpenKeyExW(root, subkey.empty() ? nullptr : wide.c_str(), 0, access, key.Receive()) != ERROR_SUCCESS) {
    key.Release();
  }
  return key;
}

// The native view first; the two named views only for keys of the machine that don't exist in it.
RegistryKey OpenKeyInSomeView(const std::string& keyText) {
  HKEY root = nullptr;
  std::string subkey;
  if (!ParseRegistryPath(keyText, root, subkey)) return {};
  RegistryKey key = OpenKey(root, subkey, KEY_READ);
  if (root != HKEY_LOCAL_MACHINE) return key;
  for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
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

bool IsStringType(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ; }

// The value's units up to its first NUL. The registry doesn't promise a terminator, nor an even length.
bool QueryText(HKEY key, const wchar_t* name, std::wstring& text) {
  DWORD type = 0;
  DWORD bytes = 0;
  if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS || !IsStringType(type)) return false;
  std::wstring buffer(bytes / 2 + 4, L'\0');
  if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &bytes) != ERROR_SUCCESS ||
      !IsStringType(type)) {
    return false;
  }
  buffer[std::min<size_t>(bytes / 2, buffer.size() - 1)] = L'\0';
  text = buffer.c_str();
  return true;
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

std::string ReadRegistryString(const std::string& keyText, const std::string& valueName, const std::string& defaultText) {
  const RegistryKey key = OpenKeyInSomeView(keyText);
  std::wstring text;
  if (!key || !QueryText(key.Get(), NameToWide(valueName).c_str(), text)) return defaultText;
  return WideToUtf8(text);
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
    if (RegEnumKeyExW(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    names.push_back(WideToUtf8(name));
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
    // Two units longer than what is announced, so that an unterminated text of full length ends all the same.
    wchar_t data[4096 / 2 + 2] = {};
    DWORD dataBytes = 4096;
    DWORD type = 0;
    if (RegEnumValueW(key.Get(), index, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(data), &dataBytes) !=
        ERROR_SUCCESS) {
      break;
    }
    data[dataBytes / 2] = L'\0';
    values[WideToUtf8(name)] = IsStringType(type) ? WideToUtf8(data) : std::string();
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
  RegistryKey key;
  if (RegOpenKeyExA(root, subkey.c_str(), 0, KEY_READ, key.Receive()) != ERROR_SUCCESS) return {};
  // Kept: the names are looked up beside the key's last component, and below the key only where the text ends in a
  // backslash.
  const size_t lastSeparator = keyText.rfind('\\');
  const std::string prefix = lastSeparator == std::string::npos ? keyText + '\\' : keyText.substr(0, lastSeparator + 1);
  for (DWORD index = 0;; ++index) {
    char name[256];
    DWORD length = 256;
    if (RegEnumKeyExA(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) return {};
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
