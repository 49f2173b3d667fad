#include "host/list_formats.h"

#include "host/catalogue/csv_writer.h"

namespace tarnwick::host {
namespace {

std::string Dumped(const Rows& value) {
  return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string OneObjectALine(const Rows& rows) {
  std::string text;
  for (const Rows& row : rows) text += Dumped(row) + "\n";
  return text;
}

// Spreadsheets run a cell that begins so as a formula, and any installed program may have written the text.
bool LooksLikeAFormula(const std::string& text) { return text.find_first_of("=+-@\t\r") == 0; }

std::string TextCell(const std::string& text) { return CsvCell(LooksLikeAFormula(text) ? "'" + text : text); }

// The text of a member as UTF-8, whatever its bytes are.
std::string CleanText(const Rows& value) { return Rows::parse(Dumped(value)).get<std::string>(); }

std::string Cell(const Rows& row, const std::string& member) {
  const auto value = row.find(member);
  if (value == row.end()) return {};
  return value->is_string() ? TextCell(CleanText(*value)) : Dumped(*value);
}

std::string CommaSeparated(const Rows& rows, const Members& members) {
  std::string text = CsvLine(members);
  for (const Rows& row : rows) {
    std::vector<std::string> cells;
    for (const std::string& member : members) cells.push_back(Cell(row, member));
    text += CsvLine(cells);
  }
  return text;
}

}  // namespace

const Members kGameMembers = {"name", "loc", "icon", "launchUrl", "exeName", "launcher", "foundBy"};
const Members kApplicationMembers = {"name", "publisher", "version", "loc", "date", "sizeKB", "icon"};
const Members kAllApplicationMembers = {"name",    "publisher", "version", "loc",
                                        "exeName", "date",      "sizeKB",  "icon"};

bool IsListFormat(Format format) {
  return format == Format::kJson || format == Format::kNdjson || format == Format::kCsv;
}

std::string FormatRows(const Rows& rows, const Members& members, Format format) {
  if (format == Format::kCsv) return CommaSeparated(rows, members);
  return format == Format::kNdjson ? OneObjectALine(rows) : Dumped(rows) + "\n";
}

}  // namespace tarnwick::host
