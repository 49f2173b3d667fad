// tarnwick apps
#include <limits>
#include <stdexcept>
#include <utility>

#include "host/application_counts.h"
#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/fleet/lines.h"
#include "host/html_page.h"
#include "host/presentation.h"
#include "host/tables.h"

namespace tarnwick::host {
namespace {

// The HTML page has a search box, so it holds all applications unless a page of the list was asked for.
bool WantsAll(const Options& options) {
  return options.all || (options.format == Format::kHtml && !options.pageAsked);
}

// Is there an n-th application? Asks for a page of one, without a buffer for its text: that loads one icon at
// most.
bool Exists(const std::wstring& filter, uint64_t number) {
  constexpr int32_t kLengthOfEmptyList = 2;
  if (number > uint64_t{std::numeric_limits<int32_t>::max()}) return false;
  return TheLibrary().Exports().IA_GetAppsJson(static_cast<int32_t>(number), 1, filter.c_str(), nullptr, 0) >
         kLengthOfEmptyList;
}

// These calls are left out of the log, which shows the one call that was asked for.
ApplicationCounts Count(const Options& options, uint64_t shown) {
  ApplicationCounts counts;
  counts.shown = counts.total = shown;
  if (!WantsAll(options)) {
    counts.page = static_cast<uint64_t>(options.page);
    counts.pageSize = static_cast<uint64_t>(options.pageSize);
    const std::wstring filter = Widen(options.filter);
    const uint64_t before = (counts.page - 1) * counts.pageSize;
    counts.total =
        CountItems(shown > 0 ? before + shown : 0, [&](uint64_t number) { return Exists(filter, number); });
  }
  // The library doesn't tell how many of those without an executable a filter would keep.
  if (options.filter.empty()) counts.cached = static_cast<uint64_t>(TheLibrary().Refresh());
  return counts;
}

// For a program a page behind the end is an empty list and no failure; a person who asked for a table is
// told.
void TellOfMissingPage(const Options& options, const ApplicationCounts& counts) {
  const std::string missing = MissingPageText(counts);
  if (missing.empty()) return;
  if (options.format == Format::kTable) throw std::runtime_error(missing);
  ReportLine(missing);
}

void WriteTable(const Options& options, const std::string& json, const ApplicationCounts& counts) {
  const std::string table = ApplicationsTable(ApplicationsFromJson(json), TableWidth(options));
  const std::string text = CountsText(counts);
  WriteResult(options.output, text.empty() ? table : table + "\n" + text);
}

void WritePage(const Options& options, const std::string& json) {
  WriteResult(options.output,
              ApplicationsPage(ApplicationsFromJson(json), {options.iconSize, !options.noIcons}));
}

}  // namespace

int RunApps(const Options& options) {
  const bool all = WantsAll(options);
  const LineOrigin origin = OriginOfRun(options);
  const std::string json = CallWithLog(options, [&](const Library& library) {
    return all ? library.AllApplications(options.filter)
               : library.Applications(options.page, options.pageSize, options.filter);
  });
  Rows rows = RowsFromJson(json);
  const bool table = options.format == Format::kTable;
  ApplicationCounts counts;
  if (table || (rows.empty() && options.page > 1)) counts = Count(options, rows.size());
  TellOfMissingPage(options, counts);
  if (options.format == Format::kNdjson)
    WriteLines(options, std::move(rows), kApplicationLines, origin);
  else if (IsListFormat(options.format))
    WriteRows(options, std::move(rows), all ? kAllApplicationMembers : kApplicationMembers);
  else if (table)
    WriteTable(options, json, counts);
  else
    WritePage(options, json);
  return kExitSuccess;
}

}  // namespace tarnwick::host
