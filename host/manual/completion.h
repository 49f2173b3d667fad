#pragma once
// What lets shells complete the program's command lines, made from its commands and options.

#include "host/manual/command_tree.h"

#include <string>
#include <vector>

namespace tarnwick::host {

// A script for bash, to be sourced or put where bash-completion looks. It needs nothing but bash 4.
std::string BashCompletion(const std::vector<CommandDefinition>& commands);

// A script for PowerShell 5 and later, to be run in a profile.
std::string PowerShellCompletion(const std::vector<CommandDefinition>& commands);

}  // namespace tarnwick::host
