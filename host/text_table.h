#pragma once
// Tables for a terminal or a file: columns as wide as their widest cell, counted in terminal columns, and
// made narrower where the terminal is. In cells, characters that would act on the terminal become blanks.

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

using Row = std::vector<std::string>;

enum class Cut { kEnd, kMiddle };

struct Column {
  const char* header;
  Cut cut;        // where a cell loses characters that is wider than its column
  size_t turn;    // the column of turn 0 gives room first
  size_t enough;  // columns that it keeps until all others have come down to their own `enough`
  size_t least;   // and then to their `least`
};

// The header, a rule and the rows, each line ended by a line feed. No line is wider than `width`, the
// terminal's columns; 0 gives every text whole.
std::string FormatTable(const std::vector<Column>& columns, const std::vector<Row>& rows, size_t width);

// A table of which every text stays whole.
std::string FormatTable(const Row& header, const std::vector<Row>& rows);

// `widths`, made to fit a terminal of `width` columns (0: any) beside each other. A column that takes more
// than a third of the terminal gives first, so that one long text doesn't cost all others theirs.
std::vector<size_t> FittedWidths(const std::vector<Column>& columns, std::vector<size_t> widths,
                                 size_t width);

// One line of a table whose columns have these widths.
std::string FormatRow(const std::vector<Column>& columns, const Row& row, const std::vector<size_t>& widths,
                      size_t width);

}  // namespace tarnwick::host
