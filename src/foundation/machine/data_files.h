#pragma once
// Reading data files. Narrow paths are UTF-8.

#include <istream>
#include <memory>
#include <string>

namespace tarnwick {

// Never null. Failed from the start where the file can't be opened; readers then find nothing in it.
using DataFile = std::unique_ptr<std::istream>;

// Text mode applies the platform's translation of line ends.
DataFile OpenTextFile(const std::string& path);
DataFile OpenTextFile(const std::wstring& path);
DataFile OpenBinaryFile(const std::string& path);

// Opens it shared for all, so that a file which is being replaced can still be read.
DataFile OpenBinaryFile(const std::wstring& path);

// All bytes of a file. False, and no contents, for an empty file and on any failure; files of 2 GiB and more
// fail.
bool ReadWholeFile(const std::wstring& path, std::string& contents);

}  // namespace tarnwick
