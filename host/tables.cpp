#include "host/tables.h"

#include <fmt/format.h>

#include "host/text_table.h"

namespace tarnwick::host {
namespace {

const std::vector<Column> kGameColumns = {{"NAME", Cut::kEnd, 2, 22, 10},
                                          {"LAUNCHER", Cut::kEnd, 3, 15, 6},
                                          {"FOUND BY", Cut::kEnd, 1, 12, 5},
                                          {"EXECUTABLE", Cut::kMiddle, 0, 24, 12}};

const std::vector<Column> kApplicationColumns = {{"NAME", Cut::kEnd, 3, 24, 10},
                                                 {"VERSION", Cut::kEnd, 2, 10, 5},
                                                 {"PUBLISHER", Cut::kEnd, 1, 13, 6},
                                                 {"EXECUTABLE", Cut::kMiddle, 0, 24, 12}};

std::string Shown(const std::string& text, const char* otherwise = "-") {
  return text.empty() ? otherwise : text;
}

}  // namespace

std::string GamesTable(const std::vector<Game>& games, const ScanReport& report, size_t width) {
  if (games.empty()) return "No games found.\n";
  std::vector<Row> rows;
  for (const Game& game : games) {
    rows.push_back({Shown(game.name, "(no name)"), game.launcher, Shown(game.strategy), Shown(game.path)});
  }
  return FormatTable(kGameColumns, rows, width) +
         fmt::format("\n{} {} ({} in the catalogue).\n", games.size(), games.size() == 1 ? "game" : "games",
                     report.gamesInCatalogue);
}

std::string ApplicationsTable(const std::vector<Application>& applications, size_t width) {
  if (applications.empty()) return "No applications found.\n";
  std::vector<Row> rows;
  for (const Application& application : applications) {
    rows.push_back({application.name, Shown(application.version), Shown(application.publisher),
                    Shown(application.path)});
  }
  return FormatTable(kApplicationColumns, rows, width);
}

}  // namespace tarnwick::host
