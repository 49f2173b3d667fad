#include "host/html_page.h"

#include <nlohmann/json.hpp>

namespace tarnwick::host {
namespace {

using nlohmann::json;

constexpr const char* kDataMarker = "{{DATA}}";

// JSON that may stand inside a script element: no '<' can end the element early. Names from the registry may
// hold anything, so bytes that are no UTF-8 are replaced, not refused.
std::string ScriptSafe(const json& data) {
  std::string text = data.dump(-1, ' ', false, json::error_handler_t::replace);
  for (size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at))
    text.replace(at, 1, "\\u003c");
  return text;
}

std::string FillPage(const json& data) {
  std::string page;
  for (const std::string& piece : PageTemplatePieces()) page += piece;
  const std::string marker = kDataMarker;
  return page.replace(page.find(marker), marker.size(), ScriptSafe(data));
}

json ReportAsJson(const ScanReport& report) {
  json strategies = json::array();
  for (const StrategyReport& strategy : report.strategies) {
    strategies.push_back({{"name", strategy.name},
                          {"level", strategy.level},
                          {"milliseconds", strategy.milliseconds},
                          {"found", strategy.found},
                          {"lines", strategy.lines}});
  }
  return {{"strategies", strategies},
          {"catalogue", report.gamesInCatalogue},
          {"raw", report.rawResults},
          {"unique", report.uniqueResults}};
}

std::string SizeText(uint64_t kilobytes) {
  if (kilobytes == 0) return {};
  if (kilobytes < 1024) return std::to_string(kilobytes) + " KB";
  return std::to_string(kilobytes / 1024) + " MB";
}

}  // namespace

std::string GamesPage(const std::vector<Game>& games, const ScanReport& report) {
  json items = json::array();
  for (const Game& game : games) {
    items.push_back({{"name", game.name},
                     {"group", game.launcher},
                     {"detail", game.strategy},
                     {"path", game.path},
                     {"icon", game.icon},
                     {"launch", game.launchUrl}});
  }
  return FillPage({{"title", "Games"}, {"items", items}, {"report", ReportAsJson(report)}});
}

std::string ApplicationsPage(const std::vector<Application>& applications) {
  json items = json::array();
  for (const Application& application : applications) {
    std::string detail = application.version;
    const std::string size = SizeText(application.sizeKb);
    if (!size.empty()) detail += (detail.empty() ? "" : " \u00b7 ") + size;
    items.push_back({{"name", application.name},
                     {"group", application.publisher},
                     {"detail", detail},
                     {"path", application.path},
                     {"icon", application.icon},
                     {"launch", ""}});
  }
  return FillPage({{"title", "Applications"}, {"items", items}, {"report", nullptr}});
}

}  // namespace tarnwick::host
