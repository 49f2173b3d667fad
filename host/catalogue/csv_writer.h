#pragma once
// Comma-separated values by RFC 4180. Knows nothing of Windows.

#include <string>
#include <vector>

namespace tarnwick::host {

// The text, in quotes where it holds a comma, a quote or a line end.
std::string CsvCell(const std::string& text);

// Cells with commas between them and a line end behind.
std::string CsvLine(const std::vector<std::string>& cells);

}  // namespace tarnwick::host
