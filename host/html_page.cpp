#include "host/html_page.h"

#include "host/icon_scaling.h"
#include "host/page/report_data.h"
#include "tarnwick/version.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include <algorithm>

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

// The icons of the list, as the page stores them.
template <class Item>
std::vector<std::string> PageIcons(const std::vector<Item>& list, const PageOptions& options) {
  std::vector<std::string> icons(list.size());
  if (!options.icons) return icons;
  const IconScaler scaler;
  for (size_t i = 0; i < list.size(); ++i) icons[i] = scaler.ScaleDown(list[i].icon, options.iconSize);
  return icons;
}

// A scan that was listened to knows what the log may not tell.
void NameStrategies(std::vector<Game>& games, const std::vector<GameFinding>& findings) {
  for (size_t i = 0; i < std::min(games.size(), findings.size()); ++i) {
    if (findings[i].run == nullptr) continue;
    games[i].strategy = findings[i].run->strategy.name;
    games[i].launcher = LauncherName(games[i].launchUrl, games[i].strategy);
  }
}

json ReportOfScan(const ObservedScan& scan, const PageOptions& options) {
  json report = ReportData(scan);
  report["version"] = TARNWICK_VERSION;
  report["catalogueFile"] = options.catalogue;
  report["began"] = options.began;
  return report;
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

std::string GamesPage(std::vector<Game> games, const ObservedScan& scan, const PageOptions& options) {
  const std::vector<GameFinding> findings = FindingsOf(scan);
  NameStrategies(games, findings);
  const std::vector<std::string> icons = PageIcons(games, options);
  json items = json::array();
  for (size_t i = 0; i < games.size(); ++i) {
    items.push_back({{"name", games[i].name},
                     {"group", games[i].launcher},
                     {"detail", games[i].strategy},
                     {"path", games[i].path},
                     {"icon", icons[i]},
                     {"launch", games[i].launchUrl},
                     {"size", 0},
                     {"explanation", i < findings.size() ? ExplanationData(findings[i]) : json()}});
  }
  return FillPage({{"title", "Games"},
                   {"launchers", true},
                   {"iconSize", options.iconSize},
                   {"items", items},
                   {"report", ReportOfScan(scan, options)}});
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
