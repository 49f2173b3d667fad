#pragma once
// Runs a program and gathers what it says.

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::tests {

struct ProgramResult {
  uint32_t exitCode = 0;
  std::string output;  // standard output, as bytes
  std::string errors;  // standard error, as bytes
};

// Runs `program`, a path or the name of a file beside the test program, with the arguments, in `folder` (empty: the current one).
// Texts are UTF-8. Throws std::runtime_error if it can't be started or takes longer than a minute.
ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& folder = {});

// The folder of the test program, with a backslash at its end.
std::string TestProgramFolder();

}  // namespace tarnwick::tests
