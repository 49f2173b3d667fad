#pragma once
// Lists for programs: JSON, one JSON object a line, and comma-separated values.

#include "host/options.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace tarnwick::host {

// An array of flat objects, whose members keep their order.
using Rows = nlohmann::ordered_json;

// The members of a row in their order, also of a list that has no rows.
using Members = std::vector<std::string>;
extern const Members kGameMembers;            // scan
extern const Members kApplicationMembers;     // a page of apps, find
extern const Members kAllApplicationMembers;  // apps --all

// Is it one of the formats that FormatRows writes?
bool IsListFormat(Format format);

// `format` is kJson, kNdjson or kCsv. Bytes that are no UTF-8 are replaced, never refused.
std::string FormatRows(const Rows& rows, const Members& members, Format format);

}  // namespace tarnwick::host
