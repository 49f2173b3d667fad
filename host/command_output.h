#pragma once
// What the commands have in common: their answer goes to the standard output or a file, all that is said
// about it to the standard error.

#include "host/library_call.h"
#include "host/list_formats.h"
#include "host/log_capture.h"
#include "host/log_output.h"
#include "host/options.h"

#include <cstddef>
#include <string>

namespace tarnwick::host {

// The columns that a table may take: a file has no limit.
size_t TableWidth(const Options& options);

// Empties the icons where they are not wanted, and writes the rows in the format that was asked for, one of
// the list formats.
void WriteRows(const Options& options, Rows rows, const Members& members);

// What `call(library)` answers, with the library's log going where the options send it.
template <class Call>
std::string CallWithLog(const Options& options, const Call& call) {
  const Library& library = TheLibrary();
  LogOutput log(options);
  const LogCapture capture([&](const LogEntry& entry) { log.Write(entry); });
  return call(library);
}

}  // namespace tarnwick::host
