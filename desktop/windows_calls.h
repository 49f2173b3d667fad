#pragma once
// What the builder's calls of Windows need: paths of any length, and the text of an error.

#include <stdexcept>
#include <string>

namespace tarnwick::desktop {

// An absolute path with the prefix that lifts the limit of 260 characters; slashes, doubled separators and
// dots are tidied, since nothing tidies them behind that prefix. Throws for a path that isn't absolute.
std::wstring LongPath(const std::string& path);

// What went wrong with what, with the code and the text of a Windows error.
std::runtime_error WindowsError(const std::string& what, const std::string& subject, unsigned long code);

}  // namespace tarnwick::desktop
