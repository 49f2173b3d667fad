#pragma once
// The worked examples of docs/formats: a page's hex dump, as the bytes that a reader can be given, so that
// the pages can't drift from the code.

#include "support/source_folder.h"

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace tarnwick::tests {

// The bytes of the `number`-th fenced block of kind `hex` on docs/formats/<page>.md, counted from 0. Its
// lines look like "00000010  28 44 56 07 01 00 00 00  75 6e 69 76 65 72 73 65  |(DV.....universe|": offset,
// bytes, and a column for people behind the bar.
inline std::string HexExample(const std::string& page, int number = 0) {
  const std::string path = SourceFolder() + "/docs/formats/" + page + ".md";
  std::ifstream file(path);
  if (!file) throw std::runtime_error("can't open " + path);
  std::string bytes;
  bool inside = false;
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("```", 0) == 0) {
      if (inside) return bytes;
      inside = line.rfind("```hex", 0) == 0 && number-- == 0;
      continue;
    }
    if (!inside) continue;
    std::istringstream columns(line.substr(0, line.find('|')));
    std::string column;
    columns >> column;
    while (columns >> column) bytes += static_cast<char>(std::stoi(column, nullptr, 16));
  }
  throw std::runtime_error("no such hex block in " + path);
}

}  // namespace tarnwick::tests
