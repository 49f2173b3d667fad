#pragma once
// What launchers say is installed, as it stands in the answers that a strategy heard: the same bytes, read by
// the library's own readers.

#include "common/heard_questions.h"

#include <string>
#include <vector>

namespace tarnwick::host {

struct ListedGame {
  std::string name;                // as the launcher spells it; empty where it gives none
  std::string id;                  // what the launcher knows it by; empty where it has none
  std::string place;               // the key or file that names it
  std::vector<std::string> leads;  // the folders and files that it names
};

// The games in the lists that the strategy reads, in the order of the answers; empty for strategies that read
// no list. A launcher that keeps two lists can name a game twice.
std::vector<ListedGame> ListedGames(const std::string& strategy, const std::vector<common::Heard>& heard);

// How many games those are.
size_t CountGames(const std::vector<ListedGame>& listed);

// The programs of Windows' own list that somebody asked about, by their DisplayName.
std::vector<ListedGame> UninstallEntries(const std::vector<common::Heard>& heard);

// The text of an answer up to its first zero character: values of the registry can have such at their end.
std::string TextOf(const Answer& answer);

// The key's text without the separators at its end.
std::string PlainKey(const std::string& key);

// What stands behind the last separator.
std::string LastPart(const std::string& path);

}  // namespace tarnwick::host
