#pragma once
// What the library would make of a catalogue file, found out before it is asked: its own answer to a file
// that it can't use is an empty list.

#include <cstddef>
#include <string>

namespace tarnwick::host {

struct CatalogueFile {
  std::string fault;        // one line with the path, what is wrong and what to do; empty: it can be used
  std::string bytes;        // as the file has them
  std::string text;         // as the library searches it: deciphered where the library deciphers
  bool enciphered = false;  // the library deciphered it
  size_t opened = 0;        // <GameSignature> in the text
  size_t closed = 0;        // </GameSignature>
  size_t records = 0;       // that the library reads
};

// Looks at the file as the library does.
CatalogueFile InspectCatalogue(const std::string& path);

// The counts in one line, where they show that the library doesn't read all that the file means to say;
// otherwise empty.
std::string CatalogueWarning(const std::string& path, const CatalogueFile& file);

// The starter catalogue that lies beside the program, where it is to be used: if no catalogue is named, the
// current folder has neither of the library's two names, and it is there. Otherwise empty.
std::string StarterCatalogue(const std::string& named);

// The file that a scan takes: the named one or, where none was named, the first of the library's own two
// names that the current folder has. Throws std::runtime_error if it has neither.
std::string CatalogueToScan(const std::string& named);

}  // namespace tarnwick::host
