#pragma once
// What the strategies share that test the catalogue's records one by one.

#include "catalogue/game_signature.h"
#include "foundation/log.h"

#include <exception>
#include <string>

namespace tarnwick {

// Catalogue records without a product have no GUID or the one of all zeros.
inline bool HasGameGuid(const GameSignature& signature) {
  return !signature.GameGUID.empty() && signature.GameGUID != "00000000-0000-0000-0000-000000000000";
}

// Runs `body`, so that a failure costs this signature alone: a std::exception ends it with a log line under
// `prefix`, such as "[UninstallSearch] ". Any other exception passes on.
template <class Body>
void GuardSignature(const std::string& prefix, const GameSignature& signature, Body&& body) {
  try {
    body();
  } catch (const std::exception& error) {
    LogStream() << prefix << "Error finding game (" << signature.DisplayName << "): " << error.what() << "\n";
  }
}

}  // namespace tarnwick
