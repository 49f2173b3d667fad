// Edge: files of records.
#include "host/catalogue/record_file.h"

#include "catalogue/catalogue_reader.h"
#include "common/catalogue_text.h"
#include "common/xml_text.h"

#include <fmt/format.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "host/catalogue/check_encoding.h"
#include "host/catalogue/csv_records.h"
#include "host/catalogue/merge.h"
#include "host/catalogue_file.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/input_file.h"

namespace tarnwick::host {
namespace {

void CheckWritable(const GameSignature& game, size_t number) {
  for (const CatalogueElement& element : common::CatalogueElements()) {
    const std::string text = common::ElementText(game, element);
    const size_t at = common::FindNoXml(text);
    if (at == text.npos) continue;
    throw std::runtime_error(fmt::format("record {} ({}): {} holds {}, which no catalogue can hold; mend it",
                                         number, RecordTitle(game), element.name,
                                         common::DescribeNoXml(text, at)));
  }
}

}  // namespace

void RefuseLargeFile(const std::string& path) {
  std::error_code none;
  const auto size = std::filesystem::file_size(Widen(path), none);
  if (none || size <= kMostFileBytes) return;
  throw std::runtime_error(
      fmt::format("{} has {} MB, more than the {} MB that are read; name a list of games", path, size >> 20,
                  kMostFileBytes >> 20));
}

GameList ReadCatalogueRecords(const std::string& path) {
  RefuseLargeFile(path);
  const CatalogueFile file = InspectCatalogue(path);
  if (!file.fault.empty()) throw std::runtime_error(file.fault);
  const std::string warning = CatalogueWarning(path, file);
  if (!warning.empty()) ReportLine(warning);
  return ParseCatalogue(file.text);
}

GameList ReadCsvRecords(const std::string& path) {
  RefuseLargeFile(path);
  const InputFile input = ReadInputFile(path);
  if (input.fault != FileFault::kNone) throw std::runtime_error(ExplainFault(path, input.fault));
  if (IsUtf16(input.bytes)) throw std::runtime_error(path + " is UTF-16; save it as UTF-8");
  try {
    return RecordsFromCsv(input.bytes);
  } catch (const CsvError& error) {
    throw std::runtime_error(
        fmt::format("{}:{}:{}: {}", path, error.place.line, error.place.column, error.what()));
  }
}

void WriteCatalogueRecords(const std::string& path, const GameList& games) {
  for (size_t i = 0; i < games.size(); ++i) CheckWritable(games[i], i + 1);
  WriteResult(path, common::CatalogueText(games));
}

void WriteCsvRecords(const std::string& path, const GameList& games) {
  WriteResult(path, CsvFromRecords(games));
}

void RefuseSameFile(const std::string& input, const std::string& output) {
  if (!output.empty() && IsSameFile(input, output))
    throw std::runtime_error(output + " is the file that is read; name another for the output");
}

}  // namespace tarnwick::host
