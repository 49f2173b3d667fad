#pragma once
// Steam's list of library folders, steamapps\libraryfolders.vdf.

#include <istream>
#include <string>
#include <vector>

namespace tarnwick {

// The value of the first "path" key of every line, at any depth, in file order; doubled backslashes become
// single ones. An empty value gives an empty entry, and nothing is taken for a duplicate. A stream that isn't
// open gives nothing.
std::vector<std::string> ReadLibraryFolders(std::istream& text);

}  // namespace tarnwick
