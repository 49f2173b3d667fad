// Reader: the HoYoPlay launcher's gamedata.dat, a counter of braces and a text search. Values follow the
// loose rule, JsonFindNextQuoted, as Riot's launch helper does: no escape is honoured, so an escaped quote
// ends a value.
#include "launchers/game_data_reader.h"

#include "foundation/log.h"
#include "foundation/text.h"
#include "launchers/json_text_reader.h"

#include <unordered_set>
#include <utility>

namespace tarnwick {
namespace {

struct Blocks {
  std::vector<MihoyoGameEntry>& entries;
  std::unordered_set<std::string> known;  // the gameBiz of all entries
  size_t openBraces = 0;
  std::string buffer;
};

void TakeBlock(Blocks& blocks) {
  MihoyoGameEntry entry;
  entry.gameBiz = JsonFindNextQuoted(blocks.buffer, "gameBiz");
  if (entry.gameBiz.empty() || !blocks.known.insert(entry.gameBiz).second) return;
  entry.installPath = JsonFindNextQuoted(blocks.buffer, "installPath");
  entry.gameShortcutName = JsonFindNextQuoted(blocks.buffer, "gameShortcutName");
  blocks.entries.push_back(std::move(entry));
}

void TakeByte(Blocks& blocks, char byte) {
  if (byte == '{') {
    // Kept: nested braces clear the buffer too, so what a block says before its last nested object is lost
    // (docs/decisions/json-text.md).
    ++blocks.openBraces;
    blocks.buffer = byte;
    return;
  }
  if (blocks.openBraces == 0) return;
  blocks.buffer += byte;
  if (byte == '}' && --blocks.openBraces == 0) TakeBlock(blocks);
}

}  // namespace

std::vector<MihoyoGameEntry> ReadGameData(std::istream& file, const std::string& path) {
  std::vector<MihoyoGameEntry> entries;
  LogExceptions("[MihoyoPlatformSearch] Error parsing gamedata.dat (" + path + "): ", [&] {
    Blocks blocks{entries, {}, 0, {}};
    for (const char byte : ReadAll(file)) TakeByte(blocks, byte);
  });
  return entries;
}

}  // namespace tarnwick
