// tarnwick find
#include <fmt/format.h>

#include <string>
#include <utility>

#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "host/find_request.h"
#include "host/presentation.h"
#include "host/tables.h"

namespace tarnwick::host {
namespace {

// The answer doesn't say which entry an application belongs to, so each is asked for alone. These calls
// are left out of the log, which shows the one call that was asked for.
void TellOfUnmatched(const FindRequest& request) {
  constexpr int32_t kLengthOfEmptyList = 2;
  const Functions& exports = TheLibrary().Exports();
  for (const RequestEntry& entry : request.entries) {
    if (!entry.asks || exports.IA_FindGamesJson(entry.text.c_str(), nullptr, 0) > kLengthOfEmptyList)
      continue;
    ReportLine(entry.label + ": no installed application has it");
  }
}

void WriteTable(const Options& options, const std::string& json, size_t entries) {
  const std::vector<Application> found = ApplicationsFromJson(json);
  WriteResult(options.output,
              ApplicationsTable(found, TableWidth(options)) +
                  fmt::format("\n{} of {} found.\n", found.size(), Counted(entries, "entry", "entries")));
}

}  // namespace

int RunFind(const Options& options) {
  const FindRequest request = ReadFindRequest(options.input);
  const std::string json =
      CallWithLog(options, [&](const Library& library) { return library.FindGamesInFile(options.input); });
  for (const std::string& line : IgnoredEntries(request)) ReportLine(line);
  Rows rows = RowsFromJson(json);
  const size_t found = rows.size();
  if (found < CountAsking(request)) TellOfUnmatched(request);
  if (IsListFormat(options.format))
    WriteRows(options, std::move(rows), kApplicationMembers);
  else
    WriteTable(options, json, request.entries.size());
  return found > 0 ? kExitSuccess : kExitFailure;
}

}  // namespace tarnwick::host
