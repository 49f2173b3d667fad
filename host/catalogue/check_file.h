#pragma once
// The check of a catalogue file.

#include "host/catalogue/check_findings.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick::host {

struct CatalogueText {
  size_t bytes = 0;         // of the file; of more than kMostBytes nothing was read
  bool enciphered = false;  // the library deciphers it
  std::string text;         // as the library searches it
};

// Throws std::runtime_error with a text for people where the file can't be read.
CatalogueText ReadCatalogueText(const std::string& path);

// What is wrong with a text, by the library's way of reading and by an XML parser's. The findings are placed.
Findings CheckWholeText(std::string_view text);

// The same for a file; for an enciphered one the places are those in its plain text. Throws as
// ReadCatalogueText does.
Findings CheckFile(const std::string& path);

}  // namespace tarnwick::host
