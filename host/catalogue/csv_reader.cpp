// Reader: comma-separated values.
#include "host/catalogue/csv_reader.h"

#include "common/xml_text.h"

namespace tarnwick::host {
namespace {

constexpr char kEnd = '\0';  // stands for the end of the text: XML has no such character

char Next(const CsvReader& reader) { return reader.rest.empty() ? kEnd : reader.rest.front(); }

[[noreturn]] void FailAtCharacter(const CsvReader& reader) {
  const std::string what = common::DescribeNoXml(reader.rest, 0);
  throw CsvError(reader.place, what.starts_with("U+") ? what + ", which no catalogue can hold"
                                                      : what + " is no UTF-8; save the file as UTF-8");
}

std::string_view TakeCharacter(CsvReader& reader) {
  const size_t length = common::XmlCharacterLength(reader.rest, 0);
  if (length == 0) FailAtCharacter(reader);
  const std::string_view character = reader.rest.substr(0, length);
  reader.rest.remove_prefix(length);
  ++reader.place.column;
  if (character.front() == '\n') reader.place = {reader.place.line + 1, 1};
  return character;
}

void AppendCharacter(CsvReader& reader, CsvField& field) {
  field.text += TakeCharacter(reader);
  if (field.text.size() <= kMostCsvFieldBytes) return;
  const std::string limit = "a field of more than " + std::to_string(kMostCsvFieldBytes) + " bytes";
  throw CsvError(field.place, limit + "; is a quote missing that closes it?");
}

bool EndsField(char byte) { return byte == ',' || byte == '\r' || byte == '\n' || byte == kEnd; }

void ReadPlainText(CsvReader& reader, CsvField& field) {
  while (!reader.rest.empty() && !EndsField(Next(reader))) {
    if (Next(reader) == '"')
      throw CsvError(reader.place, "quote inside an unquoted field; quote all of it, and double this one");
    AppendCharacter(reader, field);
  }
}

void ReadQuotedText(CsvReader& reader, CsvField& field) {
  TakeCharacter(reader);
  while (!reader.rest.empty()) {
    if (Next(reader) != '"') {
      AppendCharacter(reader, field);
      continue;
    }
    const TextPlace quote = reader.place;
    TakeCharacter(reader);
    if (Next(reader) == '"') {
      AppendCharacter(reader, field);
    } else if (reader.rest.empty() || EndsField(Next(reader))) {
      return;
    } else {
      throw CsvError(quote, "quote inside a quoted field; double it");
    }
  }
  throw CsvError(field.place, "quote that is never closed");
}

CsvField ReadField(CsvReader& reader) {
  CsvField field{{}, reader.place};
  if (Next(reader) == '"') {
    ReadQuotedText(reader, field);
  } else {
    ReadPlainText(reader, field);
  }
  return field;
}

// False if a comma stands there, and so another field is to come.
bool TakeLineEnd(CsvReader& reader) {
  if (reader.rest.empty()) return true;
  const TextPlace place = reader.place;
  const std::string_view end = TakeCharacter(reader);
  if (end == ",") return false;
  if (end == "\r") {
    if (Next(reader) != '\n') throw CsvError(place, "carriage return without a line feed");
    TakeCharacter(reader);
  }
  return true;
}

void ReadFields(CsvReader& reader, std::vector<CsvField>& fields) {
  do {
    if (fields.size() == kMostCsvFields)
      throw CsvError(reader.place, "more than " + std::to_string(kMostCsvFields) + " fields in a line");
    fields.push_back(ReadField(reader));
  } while (!TakeLineEnd(reader));
}

bool IsLineEnd(char byte) { return byte == '\r' || byte == '\n'; }

}  // namespace

CsvReader OpenCsv(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
  return {text, {}};
}

bool ReadCsvLine(CsvReader& reader, std::vector<CsvField>& fields) {
  fields.clear();
  while (!reader.rest.empty() && IsLineEnd(Next(reader))) TakeLineEnd(reader);
  if (reader.rest.empty()) return false;
  ReadFields(reader, fields);
  return true;
}

}  // namespace tarnwick::host
