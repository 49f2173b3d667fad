#pragma once
// Steam's binary files, byte by byte, for tests of their readers. Knows nothing of Windows.

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::tests {

inline std::string LittleEndian(uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
  return text;
}

inline std::string Le32(uint32_t value) { return LittleEndian(value, 4); }
inline std::string Le64(uint64_t value) { return LittleEndian(value, 8); }

// A text with the NUL that ends it.
inline std::string Terminated(const std::string& text) { return text + '\0'; }

// appinfo.vdf of any version. The key names that its functions meet gather in `table`, which File() writes.
struct AppInfoBytes {
  uint32_t version = 41;
  std::vector<std::string> table = {};

  std::string Key(const std::string& name) {
    if (version < 41) return Terminated(name);
    const auto found = std::find(table.begin(), table.end(), name);
    const auto place = static_cast<uint32_t>(found - table.begin());
    if (found == table.end()) table.push_back(name);
    return Le32(place);
  }
  std::string Entry(unsigned char type, const std::string& key, const std::string& payload) {
    return static_cast<char>(type) + Key(key) + payload;
  }
  std::string Section(const std::string& key, const std::string& body) {
    return Entry(0, key, body) + '\x08';
  }
  std::string Text(const std::string& key, const std::string& value) {
    return Entry(1, key, Terminated(value));
  }

  // What Steam keeps of an app, as far as the reader looks.
  std::string App(const std::string& name, const std::string& exe) {
    return Section("appinfo",
                   Section("common", Text("name", name) + Text("type", "Game")) +
                       Section("config", Text("installdir", name + " Folder") +
                                             Section("launch", Section("0", Text("executable", exe))))) +
           '\x08';
  }

  uint32_t HeaderSize() const { return version < 40 ? 40 : 60; }
  std::string Record(uint32_t appId, const std::string& keyValues) const {
    return Le32(appId) + Le32(HeaderSize() + static_cast<uint32_t>(keyValues.size())) +
           std::string(HeaderSize(), '\xAA') + keyValues;
  }
  // A whole file. `end` is the mark behind the records; from version 41 on the string table follows.
  std::string File(const std::string& records, const std::string& end = Le32(0)) const {
    std::string head = Le32(version | 0x07564400) + Le32(1);
    if (version < 41) return head + records + end;
    std::string file = head + Le64(16 + records.size() + end.size()) + records + end;
    file += Le32(static_cast<uint32_t>(table.size()));
    for (const std::string& key : table) file += Terminated(key);
    return file;
  }
};

// One field of shortcuts.vdf with the marker in front of its value that the reader insists on.
inline std::string ShortcutField(const std::string& key, const std::string& value) {
  return '\x01' + Terminated(key) + '\x01' + Terminated(value);
}

inline std::string ShortcutRecord(const std::string& appName, const std::string& exe,
                                  const std::string& startDir) {
  return ShortcutField("AppName", appName) + ShortcutField("exe", exe) + ShortcutField("StartDir", startDir) +
         '\x02';
}

}  // namespace tarnwick::tests
