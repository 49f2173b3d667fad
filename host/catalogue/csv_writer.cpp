#include "host/catalogue/csv_writer.h"

namespace tarnwick::host {
namespace {

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char byte : text) quoted.append(byte == '"' ? 2 : 1, byte);
  return quoted + '"';
}

}  // namespace

std::string CsvCell(const std::string& text) {
  return text.find_first_of(",\"\r\n") == text.npos ? text : Quoted(text);
}

std::string CsvLine(const std::vector<std::string>& cells) {
  std::string line;
  for (const std::string& cell : cells) line.append(&cell == &cells.front() ? "" : ",").append(cell);
  return line + "\r\n";
}

}  // namespace tarnwick::host
