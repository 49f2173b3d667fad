#pragma once
// What stands around an export's body, so that no failure in it reaches the host.

#include "foundation/log.h"
#include "foundation/seh_guard.h"

#include <cstdint>
#include <exception>
#include <string>

namespace tarnwick {

// The log lines of an export's failures. The first is followed by the exception's text.
struct ExportMessages {
  const char* exceptionPrefix;
  const char* unknownException;
};

// Runs `body` and logs any language exception that ends it. True if it came to its end.
template <class Body>
bool RunCatching(const ExportMessages& messages, Body&& body) {
  try {
    body();
    return true;
  } catch (const std::exception& error) {
    LogLine(std::string(messages.exceptionPrefix) + error.what());
  } catch (...) {
    LogLine(messages.unknownException);
  }
  return false;
}

// Logs "CRITICAL SEH ERROR in <export>: Exception Code 0x%08X".
void LogStructuredException(const char* exportName, uint32_t code);

// Runs `body` and logs a structured exception that ends it. True if it came to its end. What a structured
// exception skips stays skipped: owners that must let go all the same belong outside of `body`.
template <class Body>
bool RunExportGuarded(const char* exportName, Body&& body) {
  const uint32_t code = RunGuarded(body);
  if (code != 0) LogStructuredException(exportName, code);
  return code == 0;
}

// WriteEmptyResult behind a fault, when the caller's buffer may be the reason for it: smaller than told, or
// no buffer at all. Where the text has no room in it, an empty text is written if that has. Logs nothing.
int32_t WriteEmptyResultGuarded(const char* text, char* buffer, int32_t size);

}  // namespace tarnwick
