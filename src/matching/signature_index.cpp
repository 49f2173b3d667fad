// Reader: signatures by key.
#include "matching/signature_index.h"

namespace tarnwick {

SignatureIndex IndexSignatures(const GameList& games, int32_t sourceKind, std::string GameSignature::* key) {
  SignatureIndex index;
  for (const GameSignature& game : games) {
    if (game.SourceKind == sourceKind && !(game.*key).empty()) index[game.*key] = game;
  }
  return index;
}

const GameSignature* FindSignature(const SignatureIndex& index, const std::string& key) {
  const auto found = index.find(key);
  return found == index.end() ? nullptr : &found->second;
}

}  // namespace tarnwick
