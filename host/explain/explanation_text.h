#pragma once
// An explanation as a support person reads it.

#include "host/explain/explanation.h"

#include <cstddef>
#include <string>

namespace tarnwick::host {

struct ExplanationStyle {
  size_t width = 0;      // of the terminal, in columns; 0: no line is broken
  bool verbose = false;  // with every question, below its strategy
};

// For each game: its name, the outcome in a sentence, a line for each strategy, the near misses and what to
// do next. Hives go by their short names.
std::string ExplanationText(const Explanation& explanation, const ExplanationStyle& style);

// How many of the games aren't found.
size_t CountMissing(const Explanation& explanation);

}  // namespace tarnwick::host
