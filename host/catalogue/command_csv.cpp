// "catalogue from-csv" and "catalogue to-csv".
#include "host/catalogue/record_file.h"
#include "host/commands.h"
#include "host/failure.h"
#include "host/presentation.h"

#include <stdexcept>

namespace tarnwick::host {

int RunCatalogueFromCsv(const Options& options) {
  RefuseSameFile(options.input, options.output);
  const GameList games = ReadCsvRecords(options.input);
  if (games.empty())
    throw std::runtime_error(options.input + " holds no record; write one behind its header");
  WriteCatalogueRecords(options.output, games);
  ReportLine(Counted(games.size(), "record", "records") + " written");
  return kExitSuccess;
}

int RunCatalogueToCsv(const Options& options) {
  RefuseSameFile(options.input, options.output);
  const GameList games = ReadCatalogueRecords(options.input);
  WriteCsvRecords(options.output, games);
  ReportLine(Counted(games.size(), "record", "records") + " written");
  return kExitSuccess;
}

}  // namespace tarnwick::host
