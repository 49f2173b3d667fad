#include "host/text_table.h"

#include <algorithm>
#include <numeric>

#include "host/text_width.h"

namespace tarnwick::host {
namespace {

const std::string kGap = "  ";

std::string CutTo(Cut cut, const std::string& cell, size_t columns) {
  return cut == Cut::kMiddle ? CutMiddle(cell, columns) : CutEnd(cell, columns);
}

std::string Padding(const std::string& cell, size_t columns) {
  const size_t taken = DisplayColumns(cell);
  return std::string(taken < columns ? columns - taken : 0, ' ');
}

// The last cell of a line that has `line` before it. Combining marks take cells of their own on some
// consoles, and a line that is too long for those would wrap there: the last cell makes up for it.
std::string LastCell(const Column& column, const std::string& cell, const std::string& line, size_t columns,
                     size_t width) {
  std::string last = CutTo(column.cut, cell, columns);
  const size_t cells = ConsoleCells(line) + ConsoleCells(last);
  if (width == 0 || cells <= width) return last;
  const size_t shown = DisplayColumns(last);
  return CutTo(column.cut, cell, shown - std::min(shown, cells - width));
}

std::vector<size_t> NaturalWidths(const std::vector<Column>& columns, const std::vector<Row>& rows) {
  std::vector<size_t> widths;
  for (const Column& column : columns) widths.push_back(DisplayColumns(column.header));
  for (const Row& row : rows) {
    for (size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], DisplayColumns(row[i]));
  }
  return widths;
}

std::vector<size_t> OrderOfGiving(const std::vector<Column>& columns) {
  std::vector<size_t> order(columns.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return columns[a].turn < columns[b].turn; });
  return order;
}

// How far a column comes down in each of the rounds.
std::vector<size_t> Floors(const Column& column, size_t width) {
  return {std::max(width / 3, column.enough), column.enough, column.least, 1};
}

std::string Rule(size_t columns) {
  std::string rule;
  for (size_t i = 0; i < columns; ++i) rule += "\u2500";
  return rule;
}

std::vector<Row> Printable(const std::vector<Row>& rows) {
  std::vector<Row> printable = rows;
  for (Row& row : printable) std::transform(row.begin(), row.end(), row.begin(), PrintableText);
  return printable;
}

}  // namespace

std::vector<size_t> FittedWidths(const std::vector<Column>& columns, std::vector<size_t> widths,
                                 size_t width) {
  if (width == 0) return widths;
  const size_t rounds = Floors(columns.front(), width).size();
  size_t taken = std::accumulate(widths.begin(), widths.end(), kGap.size() * (widths.size() - 1));
  for (size_t round = 0; round < rounds; ++round) {
    for (const size_t i : OrderOfGiving(columns)) {
      const size_t floor = Floors(columns[i], width)[round];
      if (taken <= width || widths[i] <= floor) continue;
      const size_t given = std::min(taken - width, widths[i] - floor);
      widths[i] -= given;
      taken -= given;
    }
  }
  return widths;
}

std::string FormatRow(const std::vector<Column>& columns, const Row& row, const std::vector<size_t>& widths,
                      size_t width) {
  std::string line;
  const size_t last = columns.size() - 1;
  for (size_t i = 0; i < last; ++i) {
    const std::string cell = CutTo(columns[i].cut, PrintableText(row[i]), widths[i]);
    line += cell + Padding(cell, widths[i]) + kGap;
  }
  line += LastCell(columns[last], PrintableText(row[last]), line, widths[last], width);
  line.erase(line.find_last_not_of(' ') + 1);
  // The least that columns, gaps and marks take can still be too much for a very narrow terminal.
  while (width > 0 && ConsoleCells(line) > width) line = CutEnd(line, DisplayColumns(line) - 1);
  return line + '\n';
}

std::string FormatTable(const std::vector<Column>& columns, const std::vector<Row>& rows, size_t width) {
  const std::vector<Row> printable = Printable(rows);
  const std::vector<size_t> widths = FittedWidths(columns, NaturalWidths(columns, printable), width);
  Row header;
  Row rule;
  for (size_t i = 0; i < columns.size(); ++i) {
    header.push_back(columns[i].header);
    rule.push_back(Rule(widths[i]));
  }
  std::string table = FormatRow(columns, header, widths, width) + FormatRow(columns, rule, widths, width);
  for (const Row& row : printable) table += FormatRow(columns, row, widths, width);
  return table;
}

std::string FormatTable(const Row& header, const std::vector<Row>& rows) {
  std::vector<Column> columns;
  for (const std::string& text : header) columns.push_back({text.c_str(), Cut::kEnd, 0, 0, 0});
  return FormatTable(columns, rows, 0);
}

}  // namespace tarnwick::host
