// tarnwick details
#include <fmt/format.h>

#include <stdexcept>

#include "host/command_output.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/text_table.h"

namespace tarnwick::host {
namespace {

std::string IconText(const std::string& icon, bool leftOut) {
  if (leftOut) return "left out";
  return icon.empty() ? "none" : fmt::format("PNG, {} characters", icon.size());
}

// The one object as a list format would write it.
std::string WithoutIcon(Rows details) {
  details["ico"] = "";
  return details.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

int RunDetails(const Options& options) {
  const std::string json =
      CallWithLog(options, [&](const Library& library) { return library.GameDetails(options.input); });
  const Rows details = Rows::parse(json, nullptr, false);
  if (!details.is_object() || details.empty())
    throw std::runtime_error("there is no such file: " + options.input);
  if (options.format == Format::kJson) {
    WriteResult(options.output, (options.noIcons ? WithoutIcon(details) : json) + "\n");
    return kExitSuccess;
  }
  WriteResult(options.output, FormatTable({"NAME", "FILE", "ICON", "PATH"},
                                          {{details.value("name", ""), details.value("exe", ""),
                                            IconText(details.value("ico", ""), options.noIcons),
                                            details.value("exepath", "")}}));
  return kExitSuccess;
}

}  // namespace tarnwick::host
