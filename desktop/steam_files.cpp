// Writes Steam's files: text key-values, binary key-values, and the shortcuts.
#include "desktop/steam_files.h"

#include "desktop/bytes.h"

#include <map>

namespace tarnwick::desktop {
namespace {

std::string DoubleBackslashes(const std::string& text) {
  std::string doubled;
  for (const char byte : text) doubled.append(byte == '\\' ? 2u : 1u, byte);
  return doubled;
}

std::string TextLine(int depth, const std::string& key, const std::string& value) {
  return std::string(static_cast<size_t>(depth), '\t') + "\"" + key + "\"\t\t\"" + value + "\"\n";
}

// Key names of binary key-values: written out, or, with a string table, as numbers in it.
struct KeyNames {
  bool table = false;
  std::vector<std::string> names;
  std::map<std::string, uint32_t> numbers;
};

void AppendText(std::string& out, const std::string& text) {
  out += text;
  AppendByte(out, 0);
}

void AppendKey(std::string& out, KeyNames& keys, unsigned type, const std::string& name) {
  AppendByte(out, type);
  if (!keys.table) return AppendText(out, name);
  const auto [entry, fresh] = keys.numbers.insert({name, static_cast<uint32_t>(keys.names.size())});
  if (fresh) keys.names.push_back(name);
  Append32(out, entry->second);
}

constexpr unsigned kSection = 0;
constexpr unsigned kText = 1;
constexpr unsigned kNumber = 2;
constexpr unsigned kEnd = 8;

void AppendTextEntry(std::string& out, KeyNames& keys, const std::string& name, const std::string& value) {
  if (value.empty()) return;
  AppendKey(out, keys, kText, name);
  AppendText(out, value);
}

std::string AppKeyValues(const AppInfoApp& app, KeyNames& keys) {
  std::string out;
  AppendKey(out, keys, kSection, "appinfo");
  AppendKey(out, keys, kNumber, "appid");
  Append32(out, app.appId);
  AppendKey(out, keys, kSection, "common");
  AppendTextEntry(out, keys, "name", app.name);
  AppendTextEntry(out, keys, "type", app.type);
  AppendByte(out, kEnd);
  AppendKey(out, keys, kSection, "config");
  AppendTextEntry(out, keys, "installdir", app.installDir);
  AppendKey(out, keys, kSection, "launch");
  for (size_t number = 0; number < app.executables.size(); ++number) {
    AppendKey(out, keys, kSection, std::to_string(number));
    AppendTextEntry(out, keys, "executable", app.executables[number]);
    AppendByte(out, kEnd);
  }
  for (int open = 0; open < 4; ++open) AppendByte(out, kEnd);  // launch, config, appinfo, the whole
  return out;
}

std::string StringTable(const KeyNames& keys) {
  std::string table;
  Append32(table, static_cast<uint32_t>(keys.names.size()));
  for (const std::string& name : keys.names) AppendText(table, name);
  return table;
}

void AppendField(std::string& out, const std::string& key, const std::string& value) {
  AppendByte(out, 1);
  AppendText(out, key);
  AppendByte(out, 1);
  AppendText(out, value);
}

}  // namespace

std::string LibraryFoldersText(const std::vector<std::string>& libraries) {
  std::string text = "\"libraryfolders\"\n{\n";
  for (size_t number = 0; number < libraries.size(); ++number) {
    text += "\t\"" + std::to_string(number) + "\"\n\t{\n";
    text += TextLine(2, "path", DoubleBackslashes(libraries[number]));
    text += TextLine(2, "label", "");
    text += "\t}\n";
  }
  return text + "}\n";
}

std::string AppManifestText(const std::string& appId, const std::string& name,
                            const std::string& installDir) {
  return "\"AppState\"\n{\n" + TextLine(1, "appid", appId) + TextLine(1, "Universe", "1") +
         TextLine(1, "name", name) + TextLine(1, "StateFlags", "4") + TextLine(1, "installdir", installDir) +
         "}\n";
}

std::string AppInfoBytes(uint32_t version, const std::vector<AppInfoApp>& apps) {
  const uint32_t low = version & 0xFF;
  const uint32_t headerLength = low < 40 ? 40 : 60;
  KeyNames keys;
  keys.table = low >= 41;
  std::string out;
  Append32(out, 0x07564400 | low);
  Append32(out, 1);
  if (keys.table) Append64(out, 0);
  for (const AppInfoApp& app : apps) {
    const std::string values = AppKeyValues(app, keys);
    Append32(out, app.appId);
    Append32(out, headerLength + static_cast<uint32_t>(values.size()));
    out.append(headerLength, '\0');
    out += values;
  }
  Append32(out, 0);
  if (keys.table) {
    Put32(out, 8, static_cast<uint32_t>(out.size()));
    out += StringTable(keys);
  }
  return out;
}

std::string ShortcutsBytes(const std::vector<ShortcutEntry>& shortcuts) {
  std::string out;
  AppendByte(out, 0);
  AppendText(out, "shortcuts");
  for (size_t number = 0; number < shortcuts.size(); ++number) {
    AppendByte(out, 0);
    AppendText(out, std::to_string(number));
    AppendField(out, "AppName", shortcuts[number].appName);
    AppendField(out, "exe", shortcuts[number].exe);
    AppendField(out, "StartDir", shortcuts[number].startDir);
    AppendField(out, "LaunchOptions", "");
    AppendByte(out, 2);  // a number ends the record for readers that know no numbers
    AppendText(out, "IsHidden");
    Append32(out, 0);
    AppendByte(out, kEnd);
  }
  AppendByte(out, kEnd);
  AppendByte(out, kEnd);
  return out;
}

}  // namespace tarnwick::desktop
