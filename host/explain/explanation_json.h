#pragma once
// An explanation for programs; docs/schemas/explanation.schema.json tells its shape.

#include "host/explain/explanation.h"

#include <string>

namespace tarnwick::host {

// One object on one line, without a line feed. It has every question; the contents of files are told by their
// size, and bytes that are no UTF-8 are replaced.
std::string ExplanationJson(const Explanation& explanation);

}  // namespace tarnwick::host
