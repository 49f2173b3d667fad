#pragma once
// Files that a person named: read whole, and what keeps one from being read told apart.

#include <cstdint>
#include <string>

namespace tarnwick::host {

enum class FileFault { kNone, kMissing, kFolder, kInUse, kDenied, kUnreadable };

struct InputFile {
  FileFault fault = FileFault::kNone;
  std::string bytes;
};

// Shared with all: a file that another program writes to can be read, unless that program forbids it.
InputFile ReadInputFile(const std::string& path);

// The fault that an error number of Windows stands for, while a file is opened or read.
FileFault FaultOfWindowsError(uint32_t error);

// One line that names the file, says what is wrong with it and what to do; empty where nothing is.
std::string ExplainFault(const std::string& path, FileFault fault);

// Do both paths lead to one existing file, however they are spelled?
bool IsSameFile(const std::string& first, const std::string& second);

}  // namespace tarnwick::host
