#pragma once
// Long texts on several lines.

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

// The text in lines of at most `columns` terminal columns: broken at blanks, and words that are longer behind
// backslashes or, at last, anywhere. 0 columns: one line, whatever its length. Never empty; what would act on
// the terminal becomes blanks.
std::vector<std::string> WrappedLines(const std::string& text, size_t columns);

}  // namespace tarnwick::host
