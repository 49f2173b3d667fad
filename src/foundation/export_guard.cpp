// Edge: the log line of a structured exception.
#include "foundation/export_guard.h"

#include "foundation/result_buffer.h"

#include <cstdio>

namespace tarnwick {

void LogStructuredException(const char* exportName, uint32_t code) {
  char line[128];
  std::snprintf(line, sizeof line, "CRITICAL SEH ERROR in %s: Exception Code 0x%08X", exportName, code);
  LogCString(line);
}

int32_t WriteEmptyResultGuarded(const char* text, char* buffer, int32_t size) {
  const auto write = [&](int32_t room) {
    return RunGuarded([&] { WriteEmptyResult(text, buffer, room); }) == 0;
  };
  constexpr int32_t kEmptyTextOnly = 1;
  if (!write(size)) write(kEmptyTextOnly);
  return kEmptyResultLength;
}

}  // namespace tarnwick
