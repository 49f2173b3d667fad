#pragma once
// What of this machine keeps a captured thing from being made. Reasons as in capture_rules.h.

#include <string>

namespace tarnwick::desktop {

// The drive is a capital letter.
std::string DriveFault(char drive);

// Where the path is part of this machine's Windows, or leads out through a link. `path` is tidy.
std::string PlaceFault(const std::string& path);

// The path with the long names of what is there, where short ones stand in it, such as PROGRA~1.
std::string WithLongNames(const std::string& path);

}  // namespace tarnwick::desktop
