#pragma once
// Whether any strategy takes a record of the catalogue.

#include "catalogue/game_signature.h"

#include <string>

namespace tarnwick::host {

// Does any strategy take the record, for its search or to complete what it found?
bool IsEverTested(const GameSignature& record);

// What the record lacks for the strategies that come nearest to taking it, such as "DefaultFolder or
// DefaultFolder32 (Default Exe Search)"; for one that IsEverTested says no to.
std::string WhatWouldTest(const GameSignature& record);

}  // namespace tarnwick::host
