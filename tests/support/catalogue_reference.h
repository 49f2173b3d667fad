#pragma once
// The catalogue's parser in its plain form: each of the 18 elements is searched for on its own, from the
// beginning of its record. Slow, and easy to see right: the tests, the fuzz target and the bench hold the
// parser against it.

#include "catalogue/catalogue_reader.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tarnwick::tests {

struct CatalogueField {
  const char* name;
  std::string GameSignature::* field;
};

inline const std::vector<CatalogueField>& CatalogueFields() {
  using Game = GameSignature;
  static const std::vector<CatalogueField> kFields = {
      {"DisplayName", &Game::DisplayName},
      {"RegistryKey", &Game::RegistryKey},
      {"RegistryPathKeyName", &Game::RegistryPathKeyName},
      {"DefaultExe", &Game::DefaultExe},
      {"DefaultExe32", &Game::DefaultExe32},
      {"DefaultExe64", &Game::DefaultExe64},
      {"DefaultFolderExe", &Game::DefaultFolderExe},
      {"DefaultFolderExe32", &Game::DefaultFolderExe32},
      {"DefaultFolderExe64", &Game::DefaultFolderExe64},
      {"DefaultFolder", &Game::DefaultFolder},
      {"DefaultFolder32", &Game::DefaultFolder32},
      {"DefaultFolder64", &Game::DefaultFolder64},
      {"GameGUID", &Game::GameGUID},
      {"GameInfo", &Game::GameInfo},
      {"SourceExId", &Game::SourceExId},
      {"LaunchUrl", &Game::LaunchUrl},
      {"RunningExe", &Game::RunningExe},
  };
  return kFields;
}

inline GameList ParseCataloguePlainly(std::string_view text) {
  constexpr std::string_view kOpen = "<GameSignature>";
  constexpr std::string_view kClose = "</GameSignature>";
  GameList games;
  size_t position = 0;
  while (true) {
    const size_t start = text.find(kOpen, position);
    if (start == std::string_view::npos) return games;
    const size_t close = text.find(kClose, start);
    if (close == std::string_view::npos) return games;
    const std::string block(text.substr(start, close + kClose.size() - start));
    GameSignature game;
    for (const CatalogueField& row : CatalogueFields()) {
      game.*row.field = DecodeEntities(NormalizeElementText(ExtractElementText(block, row.name)));
    }
    game.SourceKind = ParseSourceKind(NormalizeElementText(ExtractElementText(block, "SourceEx")));
    games.push_back(std::move(game));
    position = close + kClose.size();
  }
}

inline bool SameGame(const GameSignature& one, const GameSignature& other) {
  for (const CatalogueField& row : CatalogueFields()) {
    if (one.*row.field != other.*row.field) return false;
  }
  return one.SourceKind == other.SourceKind;
}

// The first record in which the lists differ, one list's end included; -1 if they are the same.
inline int FirstDifference(const GameList& one, const GameList& other) {
  for (size_t i = 0; i < one.size() || i < other.size(); ++i) {
    if (i >= one.size() || i >= other.size() || !SameGame(one[i], other[i])) return static_cast<int>(i);
  }
  return -1;
}

}  // namespace tarnwick::tests
