#include "host/command_output.h"

#include <utility>

#include "host/console.h"
#include "host/presentation.h"

namespace tarnwick::host {

size_t TableWidth(const Options& options) { return options.output.empty() ? TerminalWidth() : 0; }

void WriteRows(const Options& options, Rows rows, const Members& members) {
  if (options.noIcons) DropIcons(rows);
  WriteResult(options.output, FormatRows(rows, members, options.format));
}

}  // namespace tarnwick::host
