// Reader: records of the catalogue as comma-separated values.
#include "host/catalogue/csv_records.h"

#include "catalogue/catalogue_reader.h"
#include "common/catalogue_text.h"
#include "host/catalogue/csv_writer.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace tarnwick::host {
namespace {

constexpr std::string_view kForPeople = "checked";
constexpr std::string_view kSourceName = "SourceEx";
constexpr int32_t kAnySource = -1;

struct Column {
  std::string name;
  std::string GameSignature::* field = nullptr;  // null for SourceEx, and for what is for people
  int32_t source = kAnySource;                   // of "Element@SOURCE"
};

struct Columns {
  std::vector<Column> list;
  size_t source = 0;  // SourceEx; list.size() without it
};

// What a line says of one of its sources.
struct SourceAndId {
  int32_t kind = kSourceNone;
  std::optional<std::string> id;  // none: the text of SourceExId is the id
};

std::string Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == text.npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(" \t") + 1 - first));
}

std::vector<std::string> Pieces(const std::string& text) {
  std::vector<std::string> pieces;
  size_t from = 0;
  for (size_t to; (to = text.find(';', from)) != text.npos; from = to + 1)
    pieces.push_back(Trimmed(std::string_view(text).substr(from, to - from)));
  pieces.push_back(Trimmed(std::string_view(text).substr(from)));
  return pieces;
}

// The kind of a source that must be one.
int32_t KindOf(const std::string& name, TextPlace place) {
  const int32_t kind = ParseSourceKind(name);
  if (kind == kSourceNone) throw CsvError(place, "no source is called '" + name + "'");
  return kind;
}

std::string GameSignature::* FieldOf(std::string_view name) {
  const auto* const row = std::ranges::find(kElements, name, &CatalogueElement::name);
  return row == kElements.end() ? nullptr : row->field;
}

Column ReadColumn(const CsvField& field) {
  const size_t at = field.text.find('@');
  Column column{field.text, FieldOf(field.text.substr(0, at))};
  if (column.field == nullptr && field.text != kSourceName && field.text != kForPeople)
    throw CsvError(field.place, "unknown column '" + field.text +
                                    "'; a column has an element's name, and fields are parted by commas");
  if (at != field.text.npos) column.source = KindOf(field.text.substr(at + 1), field.place);
  return column;
}

Columns ReadHeader(const std::vector<CsvField>& header) {
  Columns columns;
  for (const CsvField& field : header) {
    if (std::ranges::count(columns.list, field.text, &Column::name) != 0)
      throw CsvError(field.place, "a second column '" + field.text + "'");
    columns.list.push_back(ReadColumn(field));
  }
  const auto source = std::ranges::find(columns.list, kSourceName, &Column::name);
  columns.source = static_cast<size_t>(source - columns.list.begin());
  return columns;
}

// The record without regard to its source, and so without what is told of one source alone.
GameSignature CommonRecord(const Columns& columns, const std::vector<CsvField>& line) {
  GameSignature game;
  for (size_t i = 0; i < line.size(); ++i) {
    const Column& column = columns.list[i];
    if (column.field != nullptr && column.source == kAnySource) game.*column.field = line[i].text;
  }
  return game;
}

TextPlace PlaceOfId(const Columns& columns, const std::vector<CsvField>& line) {
  const auto id = std::ranges::find(columns.list, "SourceExId", &Column::name);
  return id == columns.list.end() ? line.front().place
                                  : line[static_cast<size_t>(id - columns.list.begin())].place;
}

std::vector<SourceAndId> SeveralSources(const CsvField& sources, const std::string& idText, TextPlace place) {
  const std::vector<std::string> names = Pieces(sources.text);
  std::vector<std::string> ids = Pieces(idText);
  if (Trimmed(idText).empty()) ids.resize(names.size());
  if (ids.size() != names.size())
    throw CsvError(place, "SourceEx holds " + std::to_string(names.size()) + " sources, SourceExId " +
                              std::to_string(ids.size()) + " of their ids");
  std::vector<SourceAndId> several;
  for (size_t i = 0; i < names.size(); ++i)
    several.push_back({KindOf(names[i], sources.place), std::move(ids[i])});
  return several;
}

std::vector<SourceAndId> SourcesOf(const Columns& columns, const std::vector<CsvField>& line,
                                   const GameSignature& common) {
  if (columns.source == line.size()) return {SourceAndId{}};
  const CsvField& field = line[columns.source];
  if (field.text.find(';') != field.text.npos)
    return SeveralSources(field, common.SourceExId, PlaceOfId(columns, line));
  const std::string name = Trimmed(field.text);
  return {SourceAndId{name.empty() ? int32_t{kSourceNone} : KindOf(name, field.place), {}}};
}

void TakeTextsOfSource(GameSignature& game, const Columns& columns, const std::vector<CsvField>& line) {
  for (size_t i = 0; i < line.size(); ++i) {
    const Column& column = columns.list[i];
    if (column.source == game.SourceKind && !line[i].text.empty()) game.*column.field = line[i].text;
  }
}

// A text for a source that the line doesn't have would be lost in silence.
void CheckNothingIsLost(const Columns& columns, const std::vector<CsvField>& line,
                        const std::vector<SourceAndId>& sources) {
  for (size_t i = 0; i < line.size(); ++i) {
    const Column& column = columns.list[i];
    if (column.source == kAnySource || line[i].text.empty()) continue;
    if (std::ranges::count(sources, column.source, &SourceAndId::kind) == 0)
      throw CsvError(line[i].place, column.name + " has a text, and the line's SourceEx no such source");
  }
}

size_t SizeOf(const GameSignature& game) {
  size_t size = sizeof(game);
  for (const CatalogueElement& element : kElements)
    if (element.field != nullptr) size += (game.*element.field).size();
  return size;
}

struct Reading {
  Columns columns;
  GameList games;
  size_t bytes = 0;
};

void AppendRecord(Reading& reading, GameSignature game, TextPlace place) {
  reading.bytes += SizeOf(game);
  if (reading.bytes > kMostRecordBytes)
    throw CsvError(place, "the records up to here take more than " + std::to_string(kMostRecordBytes >> 20) +
                              " MB; is this a list of games?");
  reading.games.push_back(std::move(game));
}

void ReadRecords(Reading& reading, const std::vector<CsvField>& line) {
  if (line.size() != reading.columns.list.size())
    throw CsvError(line.back().place, "the line ends here after " + std::to_string(line.size()) +
                                          " fields; the header has " +
                                          std::to_string(reading.columns.list.size()));
  const GameSignature common = CommonRecord(reading.columns, line);
  const std::vector<SourceAndId> sources = SourcesOf(reading.columns, line, common);
  CheckNothingIsLost(reading.columns, line, sources);
  for (const SourceAndId& source : sources) {
    GameSignature game = common;
    game.SourceKind = source.kind;
    if (source.id) game.SourceExId = *source.id;
    TakeTextsOfSource(game, reading.columns, line);
    AppendRecord(reading, std::move(game), line.front().place);
  }
}

// The columns that are looked at first stand first.
std::vector<CatalogueElement> ColumnOrder() {
  const auto isFirst = [](const CatalogueElement& element) {
    return element.name == "DisplayName" || element.name == kSourceName || element.name == "SourceExId";
  };
  std::vector<CatalogueElement> order;
  std::ranges::copy_if(common::CatalogueElements(), std::back_inserter(order), isFirst);
  std::ranges::remove_copy_if(common::CatalogueElements(), std::back_inserter(order), isFirst);
  return order;
}

}  // namespace

GameList RecordsFromCsv(std::string_view text) {
  CsvReader reader = OpenCsv(text);
  std::vector<CsvField> line;
  if (!ReadCsvLine(reader, line))
    throw CsvError({}, "there is no header; name the elements in the first line");
  Reading reading{ReadHeader(line), {}};
  while (ReadCsvLine(reader, line)) ReadRecords(reading, line);
  return std::move(reading.games);
}

std::string CsvFromRecords(const GameList& games) {
  const std::vector<CatalogueElement> order = ColumnOrder();
  std::vector<std::string> cells;
  for (const CatalogueElement& element : order) cells.emplace_back(element.name);
  std::string text = CsvLine(cells);
  for (const GameSignature& game : games) {
    cells.clear();
    for (const CatalogueElement& element : order)
      cells.push_back(CsvCell(common::ElementText(game, element)));
    text += CsvLine(cells);
  }
  return text;
}

}  // namespace tarnwick::host
