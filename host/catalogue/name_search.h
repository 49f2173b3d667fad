#pragma once
// Names of games, searched as people type them.

#include <string>

namespace tarnwick::host {

// Does the name hold the text, in any letter case?
bool HoldsName(const std::string& name, const std::string& part);

}  // namespace tarnwick::host
