// Edge: the driver of the JSON scan.
#include "core/scan_driver.h"

#include "catalogue/xml_parser.h"
#include "core/catalogue_choice.h"
#include "core/merge.h"
#include "core/scan_json.h"
#include "foundation/com_scope.h"
#include "foundation/conversions.h"
#include "foundation/export_guard.h"
#include "foundation/locks.h"
#include "foundation/log.h"
#include "foundation/machine/paths.h"
#include "foundation/result_buffer.h"

namespace tarnwick {
namespace {

constexpr char kNothing[] = "[]";

int ScanGames(const GameList& games, char* buffer, int size, const StrategyTable& table) {
  const ScanResults all = RunStrategies(games, table);
  const ScanResults unique = MergeResults(all);
  LogLine("Total raw results: " + std::to_string(all.size()));
  LogLine("Unique results after deduplication: " + std::to_string(unique.size()));
  const int length = WriteResult(WriteScanJson(unique), buffer, size);
  LogLine("Successfully finished IA_RunMultiPlatformGameScanJson");
  return length;
}

int ScanCatalogue(const char* path, char* buffer, int size, const StrategyTable& table) {
  LogLine(std::string(50, '='));
  LogLine("IA_RunMultiPlatformGameScanJson START");
  LogLine(std::string("Input config path (raw UTF-8): ") + (path != nullptr ? path : "null"));
  const std::wstring catalogue = ChooseCatalogue(path);
  LogLine("Using XML file: " + WideToUtf8(catalogue));
  if (!ShellPathExists(catalogue)) {
    LogLine("XML file not found!");
    return WriteEmptyResult(kNothing, buffer, size);
  }
  LogLine("Calling XmlParser::LoadGameListFromXml...");
  const GameList games = XmlParser::LoadGameListFromXml(catalogue);
  LogLine("Loaded " + std::to_string(games.size()) + " games from XML.");
  if (games.empty()) {
    const int length = WriteEmptyResult(kNothing, buffer, size);
    LogLine("No games loaded, returning empty array.");
    return length;
  }
  return ScanGames(games, buffer, size, table);
}

}  // namespace

int IA_RunMultiPlatformGameScanJson_Impl(const char* path, char* buffer, int size,
                                         const StrategyTable& table) {
  static constexpr ExportMessages kMessages = {
      "CRITICAL ERROR in IA_RunMultiPlatformGameScanJson: ",
      "CRITICAL ERROR: Unknown exception in IA_RunMultiPlatformGameScanJson."};
  const CriticalSectionScope lock(g_apiLock);
  const ComScope com;
  int length = 0;
  if (RunCatching(kMessages, [&] { length = ScanCatalogue(path, buffer, size, table); })) return length;
  return WriteEmptyResult(kNothing, buffer, size);
}

int RunScanGuarded(const char* path, char* buffer, int size, const StrategyTable& table) {
  int length = 0;
  const auto scan = [&] { length = IA_RunMultiPlatformGameScanJson_Impl(path, buffer, size, table); };
  if (RunExportGuarded("IA_RunMultiPlatformGameScanJson", scan)) return length;
  return WriteEmptyResultGuarded(kNothing, buffer, size);
}

}  // namespace tarnwick
