#pragma once
// Paths as they are compared: without regard to case and kinds of slashes.

#include <string>

namespace tarnwick::host {

// A UTF-8 path in lower case, with single backslashes, and none at its end. Outer quotes are dropped.
std::string ComparablePath(const std::string& path);

// True if a path is the place itself or lies below it. Both are comparable paths; an empty place holds none.
bool IsAtOrBelow(const std::string& path, const std::string& place);

// The full form, by Windows' rules; the text itself if it has none.
std::string FullForm(const std::string& path);

}  // namespace tarnwick::host
