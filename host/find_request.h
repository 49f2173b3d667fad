#pragma once
// A lookup request as the library reads it, to tell people which of its entries came to nothing.

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

struct RequestEntry {
  std::string text;   // the object, from brace to brace
  std::string label;  // `entry 2 ("Foo", foo.exe)`
  bool asks = false;  // the library looks for it: it has an exeName
};

struct FindRequest {
  std::vector<RequestEntry> entries;
  bool openEnd = false;  // behind the last entry an object begins that has no end
};

FindRequest FindRequestFromText(const std::string& text);

// Throws std::runtime_error with one line for people where the file can't be read, is empty, is UTF-16 or
// holds no object.
FindRequest ReadFindRequest(const std::string& path);

// Of the library's reading: the entries that ask for something.
size_t CountAsking(const FindRequest& request);

// What the library leaves out, a line for each.
std::vector<std::string> IgnoredEntries(const FindRequest& request);

}  // namespace tarnwick::host
