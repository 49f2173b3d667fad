#pragma once
// What the readers of Steam's text files share. They know lines that may hold a quoted key, and nothing of
// nesting.

#include <cstddef>
#include <optional>
#include <string>

namespace tarnwick {

// The text between the next two double quotes at or behind `from`, unescaped; nothing if a quote is missing.
// An escaped quote isn't known: the first one ends the value.
std::optional<std::string> QuotedValueBehind(const std::string& line, size_t from);

}  // namespace tarnwick
