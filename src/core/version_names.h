#pragma once
// What a file's version resource calls it.

#include <string>

namespace tarnwick {

// The FileDescription or, where that is empty, the ProductName. Each is the first that any of the resource's
// translations has, in their order. Empty for a file without them.
std::wstring VersionName(const std::wstring& path);

}  // namespace tarnwick
