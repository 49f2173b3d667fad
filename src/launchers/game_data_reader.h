#pragma once
// The HoYoPlay launcher's gamedata.dat: one JSON object for each installed game, among bytes that are no
// text.

#include <istream>
#include <string>
#include <vector>

namespace tarnwick {

// One block of the file. Texts are as the file spells them.
struct MihoyoGameEntry {
  std::string gameShortcutName;  // nothing reads it
  std::string installPath;       // may be empty
  std::string gameBiz;           // never empty
};

// The stream's blocks in file order, the first of each gameBiz. A standard exception ends it with a log line
// that names `path`, and what was read so far counts.
std::vector<MihoyoGameEntry> ReadGameData(std::istream& file, const std::string& path);

}  // namespace tarnwick
