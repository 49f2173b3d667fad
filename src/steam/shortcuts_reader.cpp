// Reader: shortcuts, by marker bytes. The file is not read as sections and typed values: three byte values
// mean something wherever they stand, and everything else is text or stepped over.
#include "steam/shortcuts_reader.h"

#include "foundation/text.h"

#include <algorithm>
#include <optional>

namespace tarnwick {
namespace {

constexpr char kTextEnd = 0x00;
constexpr char kTextMarker = 0x01;
constexpr char kRecordEnd = 0x02;

// The bytes from `cursor` up to the next NUL, and the cursor behind it; nothing if the record ends first.
std::optional<std::string_view> TakeText(std::string_view record, size_t& cursor) {
  const size_t end = record.find(kTextEnd, cursor);
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view text = record.substr(cursor, end - cursor);
  cursor = end + 1;
  return text;
}

void SetField(SteamShortcut& shortcut, std::string_view key, std::string_view value) {
  std::string* field = key == "AppName"    ? &shortcut.appName
                       : key == "exe"      ? &shortcut.exe
                       : key == "StartDir" ? &shortcut.startDir
                                           : nullptr;
  if (field != nullptr) *field = StripOuterQuotes(std::string(value));
}

SteamShortcut ReadRecord(std::string_view record) {
  SteamShortcut shortcut;
  size_t cursor = 0;
  while (cursor < record.size()) {
    if (record[cursor++] != kTextMarker) continue;
    const std::optional<std::string_view> key = TakeText(record, cursor);
    if (!key || cursor == record.size()) break;
    // Kept: a value needs a marker of its own. Without one the key is dropped and its value is scanned for
    // markers (docs/decisions/steam-binary-files.md).
    if (record[cursor] != kTextMarker) continue;
    ++cursor;
    const std::optional<std::string_view> value = TakeText(record, cursor);
    if (!value) break;
    SetField(shortcut, *key, *value);
  }
  return shortcut;
}

}  // namespace

void ReadShortcuts(std::string_view bytes, std::vector<SteamShortcut>& shortcuts) {
  for (size_t at = 0; at < bytes.size();) {
    const size_t end = std::min(bytes.find(kRecordEnd, at), bytes.size());
    SteamShortcut shortcut = ReadRecord(bytes.substr(at, end - at));
    if (!shortcut.appName.empty() && !shortcut.exe.empty() && !shortcut.startDir.empty()) {
      shortcuts.push_back(std::move(shortcut));
    }
    at = end + 1;
  }
}

}  // namespace tarnwick
