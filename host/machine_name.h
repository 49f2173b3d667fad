#pragma once
// What this machine is called.

#include <windows.h>

#include <string>

namespace tarnwick::host {

// In UTF-8; empty where Windows doesn't tell.
std::string MachineName(COMPUTER_NAME_FORMAT format);

}  // namespace tarnwick::host
