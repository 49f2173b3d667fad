#include "host/tables.h"

#include <fmt/format.h>

#include "host/text_table.h"

namespace tarnwick::host {
namespace {

std::string Shown(const std::string& text, const char* otherwise = "-") {
  return text.empty() ? otherwise : text;
}

}  // namespace

std::string GamesTable(const std::vector<Game>& games, const ScanReport& report, size_t) {
  if (games.empty()) return "No games found.\n";
  std::vector<Row> rows;
  for (const Game& game : games) {
    rows.push_back({Shown(game.name, "(no name)"), game.launcher, Shown(game.strategy), Shown(game.path)});
  }
  return FormatTable({"NAME", "LAUNCHER", "FOUND BY", "EXECUTABLE"}, rows) +
         fmt::format("\n{} games ({} in the catalogue).\n", games.size(), report.gamesInCatalogue);
}

std::string ApplicationsTable(const std::vector<Application>& applications, size_t) {
  if (applications.empty()) return "No applications found.\n";
  std::vector<Row> rows;
  for (const Application& application : applications) {
    rows.push_back({application.name, Shown(application.version), Shown(application.publisher),
                    Shown(application.path)});
  }
  return FormatTable({"NAME", "VERSION", "PUBLISHER", "EXECUTABLE"}, rows) +
         fmt::format("\n{} applications.\n", applications.size());
}

}  // namespace tarnwick::host
