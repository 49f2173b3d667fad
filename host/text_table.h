#pragma once
// A table for a terminal or a file: columns as wide as their widest cell, counted in terminal columns.

#include <string>
#include <vector>

namespace tarnwick::host {

using Row = std::vector<std::string>;

// The header, a rule and the rows, each line ended by a line feed. Control characters inside cells become
// blanks.
std::string FormatTable(const Row& header, const std::vector<Row>& rows);

}  // namespace tarnwick::host
