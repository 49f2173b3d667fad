#pragma once
// The signatures of one source, by the text that a launcher knows its games by.

#include "catalogue/game_signature.h"

#include <cstdint>
#include <map>
#include <string>

namespace tarnwick {

using SignatureIndex = std::map<std::string, GameSignature>;  // compared byte by byte, with case

// Those of `games` with this SourceKind whose `key` field isn't empty. Of equal keys the last in the list
// stays.
SignatureIndex IndexSignatures(const GameList& games, int32_t sourceKind, std::string GameSignature::* key);

// The signature under `key`, or null. It belongs to the index.
const GameSignature* FindSignature(const SignatureIndex& index, const std::string& key);

}  // namespace tarnwick
