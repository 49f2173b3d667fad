#include "host/html_page.h"

#include "host/icon_scaling.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

namespace tarnwick::host {
namespace {

using nlohmann::json;

constexpr const char* kDataMarker = "{{DATA}}";

// JSON that may stand inside a script element: no '<' can end the element early. Names from the registry may
// hold anything, so bytes that are no UTF-8 are replaced, not refused.
std::string ScriptSafe(const json& data) {
  const std::string text = data.dump(-1, ' ', false, json::error_handler_t::replace);
  std::string safe;
  safe.reserve(text.size());
  for (const char character : text) character == '<' ? safe += "\\u003c" : safe += character;
  return safe;
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
          {"unique", report.uniqueResults},
          {"notes", report.notes}};
}

// The icons of the list, as the page stores them.
template <class Item>
std::vector<std::string> PageIcons(const std::vector<Item>& list, const PageOptions& options) {
  std::vector<std::string> icons(list.size());
  if (!options.icons) return icons;
  const IconScaler scaler;
  for (size_t i = 0; i < list.size(); ++i) icons[i] = scaler.ScaleDown(list[i].icon, options.iconSize);
  return icons;
}

std::string VersionAndSize(const Application& application) {
  const std::string size = SizeText(application.sizeKb);
  if (application.version.empty() || size.empty()) return application.version + size;
  return application.version + " \u00b7 " + size;
}

}  // namespace

std::string SizeText(uint64_t kilobytes) {
  if (kilobytes == 0) return {};
  if (kilobytes < 1024) return fmt::format("{} KB", kilobytes);
  const double megabytes = static_cast<double>(kilobytes) / 1024;
  // What would round to 1024.0 MB is 1.0 GB.
  return megabytes < 1023.95 ? fmt::format("{:.1f} MB", megabytes)
                             : fmt::format("{:.1f} GB", megabytes / 1024);
}

std::string GamesPage(const std::vector<Game>& games, const ScanReport& report, const PageOptions& options) {
  const std::vector<std::string> icons = PageIcons(games, options);
  json items = json::array();
  for (size_t i = 0; i < games.size(); ++i) {
    items.push_back({{"name", games[i].name},
                     {"group", games[i].launcher},
                     {"detail", games[i].strategy},
                     {"path", games[i].path},
                     {"icon", icons[i]},
                     {"launch", games[i].launchUrl},
                     {"size", 0}});
  }
  return FillPage({{"title", "Games"},
                   {"launchers", true},
                   {"iconSize", options.iconSize},
                   {"items", items},
                   {"report", ReportAsJson(report)}});
}

std::string ApplicationsPage(const std::vector<Application>& applications, const PageOptions& options) {
  const std::vector<std::string> icons = PageIcons(applications, options);
  json items = json::array();
  for (size_t i = 0; i < applications.size(); ++i) {
    items.push_back({{"name", applications[i].name},
                     {"group", applications[i].publisher},
                     {"detail", VersionAndSize(applications[i])},
                     {"path", applications[i].path},
                     {"icon", icons[i]},
                     {"launch", ""},
                     {"size", applications[i].sizeKb}});
  }
  return FillPage({{"title", "Applications"},
                   {"launchers", false},
                   {"iconSize", options.iconSize},
                   {"items", items},
                   {"report", nullptr}});
}

}  // namespace tarnwick::host
