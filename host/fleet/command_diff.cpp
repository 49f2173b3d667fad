// tarnwick diff
#include <fmt/format.h>

#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/fleet/scan_diff.h"
#include "host/list_formats.h"
#include "host/text_width.h"

namespace tarnwick::host {
namespace {

constexpr int kExitSame = 0;
constexpr int kExitDiffer = 1;
constexpr int kExitUnread = 2;

Rows RowOf(const ScannedGame& game) {
  return {{"name", game.name}, {"launcher", game.launcher}, {"launchUrl", game.launchUrl}, {"loc", game.loc}};
}

Rows RowOf(const MovedGame& moved) {
  Rows row = RowOf(moved.game);
  row["from"] = moved.from;
  return row;
}

Rows RowOf(const ScanFile& scan) {
  return {{"time", scan.time}, {"machine", scan.machine}, {"games", scan.games.size()}};
}

template <class Games>
Rows RowsOf(const Games& games) {
  Rows rows = Rows::array();
  for (const auto& game : games) rows.push_back(RowOf(game));
  return rows;
}

std::string JsonText(const ScanFile& older, const ScanFile& newer, const ScanDifference& difference) {
  const Rows all = {{"old", RowOf(older)},
                    {"new", RowOf(newer)},
                    {"added", RowsOf(difference.added)},
                    {"removed", RowsOf(difference.removed)},
                    {"moved", RowsOf(difference.moved)}};
  return FormatRows(all, {}, Format::kJson);
}

// "- Wren (Steam)  C:\Games\Wren\wren.exe"
std::string GameLine(const char* mark, const ScannedGame& game, const std::string& place) {
  std::string line = mark + game.name;
  if (!game.launcher.empty()) line += " (" + game.launcher + ")";
  if (!place.empty()) line += "  " + place;
  return PrintableText(line) + "\n";
}

std::string PlainText(const ScanDifference& difference) {
  std::string text;
  for (const ScannedGame& game : difference.removed) text += GameLine("- ", game, game.loc);
  for (const ScannedGame& game : difference.added) text += GameLine("+ ", game, game.loc);
  for (const MovedGame& moved : difference.moved)
    text += GameLine("~ ", moved.game, moved.from + " -> " + moved.game.loc);
  return text;
}

bool WriteDifference(const Options& options) {
  const ScanFile older = ReadScan(options.input);
  const ScanFile newer = ReadScan(options.secondInput);
  if (!older.machine.empty() && !newer.machine.empty() && older.machine != newer.machine)
    ReportLine(fmt::format("the scans are of two machines, {} and {}", older.machine, newer.machine));
  const ScanDifference difference = CompareScans(older.games, newer.games);
  WriteStandardOutput(options.format == Format::kJson ? JsonText(older, newer, difference)
                                                      : PlainText(difference));
  return !difference.removed.empty() || !difference.added.empty() || !difference.moved.empty();
}

}  // namespace

int RunDiff(const Options& options) {
  bool differ = false;
  const int read = RunReportingFailures([&] {
    differ = WriteDifference(options);
    return kExitSuccess;
  });
  // Whatever failed, 1 would say that both were read and compared.
  if (read != kExitSuccess) return kExitUnread;
  return differ ? kExitDiffer : kExitSame;
}

}  // namespace tarnwick::host
