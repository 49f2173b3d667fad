#pragma once
// Who names which games: the catalogue, the launchers, Windows' list of programs and the scan's answer.

#include "host/explain/listed_games.h"
#include "host/explain/observed_scan.h"

#include <set>
#include <string>
#include <vector>

namespace tarnwick::host {

// What a person would call the same name: equal but for case, accents and trademark signs.
std::string NameKey(const std::string& name);

// A name with who gives it: "GOG", "Steam", "Windows' list of programs", ...
struct NamedBy {
  std::string who;
  std::string name;
  std::string place;  // the key or file; empty for a result
};

// Who the strategy's list belongs to, for people.
std::string OwnerOfList(const std::string& strategy);

// Every name that somebody but the catalogue gave during the scan, each once for whoever gave it.
std::vector<NamedBy> NamesHeard(const ObservedScan& scan);

// Those of the names that differ from `name` and are near it (AreNear), in words: "the catalogue says 'Foo 2',
// GOG says 'Foo II'".
std::vector<std::string> NearMisses(const std::string& name, const std::vector<NamedBy>& heard);

// The catalogue's names that are near one that somebody else gives, in the same words.
std::vector<std::string> NearRecords(const NamedBy& named, const GameList& catalogue);

// The names that are near this one, whoever gives them; at most five.
std::vector<std::string> SimilarNames(const std::string& name, const ObservedScan& scan,
                                      const std::vector<NamedBy>& heard);

}  // namespace tarnwick::host
