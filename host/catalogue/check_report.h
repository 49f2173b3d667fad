#pragma once
// Findings as people and programs read them.

#include "host/catalogue/check_findings.h"

#include <string>

namespace tarnwick::host {

// One line for each finding, as compilers write them: "FILE:LINE:COLUMN: error[TC001]: what; what to do". With
// `strict` a warning is an error.
std::string FindingsAsText(const std::string& path, const Findings& findings, bool strict);

// A JSON array in one line, after docs/schemas/catalogue-check.schema.json.
std::string FindingsAsJson(const std::string& path, const Findings& findings, bool strict);

// "3 errors, 1 warning in 20 records", with what was left out; "no errors, ..." where there is none.
std::string FindingCounts(const Findings& findings, bool strict);

}  // namespace tarnwick::host
