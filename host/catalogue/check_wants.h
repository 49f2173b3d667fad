#pragma once
// Which strategy takes which records of the catalogue, before it asks the machine anything.

#include "catalogue/game_signature.h"

#include <string>

namespace tarnwick::host {

// Does any strategy take the record, for its search or to complete what it found?
bool IsEverTested(const GameSignature& record);

// What the record lacks for the strategies that come nearest to taking it, such as "DefaultFolder or
// DefaultFolder32 (Default Exe Search)"; for one that IsEverTested says no to.
std::string WhatWouldTest(const GameSignature& record);

// The name of a source as SourceEx has it, "none" for 0.
std::string_view SourceName(int32_t kind);

}  // namespace tarnwick::host
