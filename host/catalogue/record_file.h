#pragma once
// Files of records: catalogues as the library reads them, and comma-separated values.

#include "catalogue/game_signature.h"

#include <cstddef>
#include <string>

namespace tarnwick::host {

// Larger files are refused before they are read: 20,000 games take some 10 MB.
inline constexpr size_t kMostFileBytes = size_t{256} << 20;

// Throws std::runtime_error with the file's name where it is larger. A file that isn't there passes.
void RefuseLargeFile(const std::string& path);

// The records of a catalogue, plain or enciphered, as the library reads them. Reports in one line if it doesn't
// read all that the file means to say. Throws std::runtime_error with the file's name where there are none.
GameList ReadCatalogueRecords(const std::string& path);

// The records of a file of comma-separated values; std::runtime_error has "FILE:LINE:COLUMN: ".
GameList ReadCsvRecords(const std::string& path);

// Write to the file, or to the standard output where the path is empty. A catalogue must hold XML's characters
// alone: std::runtime_error names the record and the element that doesn't.
void WriteCatalogueRecords(const std::string& path, const GameList& games);
void WriteCsvRecords(const std::string& path, const GameList& games);

// Throws std::runtime_error where the output is a file that is read.
void RefuseSameFile(const std::string& input, const std::string& output);

}  // namespace tarnwick::host
