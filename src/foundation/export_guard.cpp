// Edge: the log line of a structured exception.
#include "foundation/export_guard.h"

#include <cstdio>

namespace tarnwick {

void LogStructuredException(const char* exportName, uint32_t code) {
  char line[128];
  std::snprintf(line, sizeof line, "CRITICAL SEH ERROR in %s: Exception Code 0x%08X", exportName, code);
  LogCString(line);
}

}  // namespace tarnwick
