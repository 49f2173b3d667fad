#pragma once
// Comma-separated values by RFC 4180, a line at a time: what is held is one line's fields. Knows nothing of
// Windows. A byte-order mark is skipped, lines may end without a carriage return, and the last needs no end.
// Every fault has its place, and nothing is guessed.

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::host {

// Where a character stands. Columns count characters, not bytes.
struct TextPlace {
  size_t line = 1;
  size_t column = 1;
};

struct CsvError : std::runtime_error {
  CsvError(TextPlace where, const std::string& what) : std::runtime_error(what), place(where) {}
  TextPlace place;
};

struct CsvField {
  std::string text;
  TextPlace place;  // of the first character, or of the quote before it
};

inline constexpr size_t kMostCsvFields = 1024;                  // of a line
inline constexpr size_t kMostCsvFieldBytes = size_t{64} << 10;  // more than any path or address has

struct CsvReader {
  std::string_view rest;
  TextPlace place;
};

// The text must outlive the reader.
CsvReader OpenCsv(std::string_view text);

// The next line's fields; empty lines are passed over. False at the end. Throws CsvError for a stray quote or
// carriage return, a quote that is never closed, too long a line, and characters that are no UTF-8 or that XML
// has none of. Takes time in proportion to the text's length, whatever it holds.
bool ReadCsvLine(CsvReader& reader, std::vector<CsvField>& fields);

}  // namespace tarnwick::host
