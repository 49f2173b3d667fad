#pragma once
// UTF-8 texts as a terminal shows them: how many columns they take, and how they are made to take fewer.

#include <cstddef>
#include <string>

namespace tarnwick::host {

// Terminal columns: two for wide characters, none for combining marks.
size_t DisplayColumns(const std::string& text);

// Columns on a console that gives every UTF-16 unit a cell of its own, combining marks too. Never fewer than
// DisplayColumns.
size_t ConsoleCells(const std::string& text);

// The text with a blank for each character that would act on the terminal instead of being shown: control
// characters, line and paragraph separators, overrides and isolates of the writing direction.
std::string PrintableText(const std::string& text);

// The text if it fits into `columns`, else its beginning and an ellipsis.
std::string CutEnd(const std::string& text, size_t columns);

// The path if it fits into `columns`, else its beginning, an ellipsis and the file name, or as much of the
// file name's end as there is room for.
std::string CutMiddle(const std::string& path, size_t columns);

}  // namespace tarnwick::host
