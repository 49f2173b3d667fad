#pragma once
// UTF-8 in, UTF-16 out, and paths of any length. The builder is linked into programs that don't hold the
// library's own conversions, and unlike those it refuses malformed text: a test that misspells a name should
// hear of it.

#include <stdexcept>
#include <string>

namespace tarnwick::desktop {

// Keeps zero characters inside the text. Throw std::runtime_error for malformed text.
std::wstring Wide(const std::string& text);
std::string Narrow(const std::wstring& text);

// An absolute path with the prefix that lifts the limit of 260 characters; slashes, doubled separators and
// dots are tidied, since nothing tidies them behind that prefix. Throws for a path that isn't absolute.
std::wstring LongPath(const std::string& path);

// What went wrong with what, with the code and the text of a Windows error.
std::runtime_error WindowsError(const std::string& what, const std::string& subject, unsigned long code);

}  // namespace tarnwick::desktop
