#pragma once
// The program's commands and options as plain records, drawn from the definitions that parse the command line:
// what is made of them can't be out of date.

#include <string>
#include <vector>

namespace tarnwick::host {

struct OptionDefinition {
  std::vector<std::string> names;    // "-o", "--output"; for an argument its one name, such as "CATALOGUE"
  std::string value;                 // what stands behind it: "FILE", "TEXT", "INT"; empty for a flag
  std::vector<std::string> choices;  // the values that it takes, if these are few
  std::string help;
  bool positional = false;
  bool required = false;
};

struct CommandDefinition {
  std::string words;  // "catalogue diff"; empty for the program itself
  std::string help;
  std::string footer;
  std::vector<OptionDefinition> options;  // and arguments, as help lists them
  std::vector<std::string> subcommands;   // their last words
};

// The program itself first, each command before its parts.
std::vector<CommandDefinition> CommandDefinitions();

}  // namespace tarnwick::host
