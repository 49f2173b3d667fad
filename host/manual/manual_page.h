#pragma once
// The program's manual page.

#include "host/manual/command_tree.h"

#include <string>
#include <vector>

namespace tarnwick::host {

// In troff with the macros of man(7), for section 1.
std::string ManualPage(const std::vector<CommandDefinition>& commands);

}  // namespace tarnwick::host
