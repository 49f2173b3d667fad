#include "host/text_table.h"

#include <fmt/format.h>

#include <algorithm>

namespace tarnwick::host {
namespace {

constexpr size_t kWidest = 400;

// How many terminal columns a cell takes: {fmt} knows which characters are two columns wide, so the width is
// what it does not have to fill.
size_t DisplayWidth(const std::string& cell) {
  const std::string padded = fmt::format("{:\x01<{}}", cell, kWidest);
  return kWidest - static_cast<size_t>(std::count(padded.begin(), padded.end(), '\x01'));
}

std::string Cleaned(const std::string& cell) {
  std::string clean = cell;
  std::replace_if(
      clean.begin(), clean.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x20; }, ' ');
  return clean;
}

std::string FormatRow(const Row& row, const std::vector<size_t>& widths) {
  std::string line;
  for (size_t i = 0; i < row.size(); ++i) {
    line += i + 1 == row.size() ? Cleaned(row[i]) : fmt::format("{:<{}}  ", Cleaned(row[i]), widths[i]);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

}  // namespace

std::string FormatTable(const Row& header, const std::vector<Row>& rows) {
  std::vector<size_t> widths(header.size());
  for (size_t i = 0; i < header.size(); ++i) {
    widths[i] = DisplayWidth(header[i]);
    for (const Row& row : rows) widths[i] = std::max(widths[i], DisplayWidth(Cleaned(row[i])));
  }
  Row rule;
  for (const size_t width : widths) {
    std::string dashes;
    for (size_t i = 0; i < width; ++i) dashes += "\u2500";
    rule.push_back(dashes);
  }
  std::string table = FormatRow(header, widths) + FormatRow(rule, widths);
  for (const Row& row : rows) table += FormatRow(row, widths);
  return table;
}

}  // namespace tarnwick::host
