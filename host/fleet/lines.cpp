#include "host/fleet/lines.h"

#include <windows.h>

#include <fmt/format.h>

#include <utility>

#include "host/console.h"
#include "host/machine_name.h"
#include "host/presentation.h"
#include "tarnwick/version.h"

namespace tarnwick::host {
namespace {

std::string UtcNow() {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}Z", now.wYear, now.wMonth, now.wDay, now.wHour,
                     now.wMinute, now.wSecond, now.wMilliseconds);
}

std::string NameOfMachine(const Options& options) {
  if (options.noMachine) return {};
  // The other kind of name, NetBIOS', is cut at 15 characters.
  return options.machine.empty() ? MachineName(ComputerNamePhysicalDnsHostname) : options.machine;
}

void AddOrigin(Rows& line, const char* kind, const LineOrigin& origin) {
  line["kind"] = kind;
  line["form"] = kLineForm;
  line["time"] = origin.time;
  line["machine"] = origin.machine;
}

}  // namespace

LineOrigin OriginOfRun(const Options& options) { return {UtcNow(), NameOfMachine(options)}; }

std::string LinesOfRun(const Rows& rows, const LineKinds& kinds, const LineOrigin& origin) {
  Rows lines = rows;
  for (Rows& line : lines) AddOrigin(line, kinds.row, origin);
  Rows end = Rows::object();
  AddOrigin(end, kinds.end, origin);
  end["lines"] = rows.size();
  end["program"] = TARNWICK_VERSION;
  lines.push_back(std::move(end));
  return FormatRows(lines, {}, Format::kNdjson);
}

void WriteLines(const Options& options, Rows rows, const LineKinds& kinds, const LineOrigin& origin) {
  if (!options.icons) DropIcons(rows);
  WriteResult(options.output, LinesOfRun(rows, kinds, origin));
}

}  // namespace tarnwick::host
