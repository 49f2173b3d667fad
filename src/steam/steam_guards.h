#pragma once
// The guard that the Steam strategies put around their scans.

#include "foundation/log.h"

#include <string>

namespace tarnwick {

// As LogExceptions for "<tag> Critical Error: "; any other exception is logged as "<tag> Critical Unknown
// Error". Nothing passes.
template <class Body>
void LogCriticalErrors(const std::string& tag, Body&& body) {
  try {
    LogExceptions(tag + " Critical Error: ", body);
  } catch (...) {
    LogStream() << tag << " Critical Unknown Error\n";
  }
}

}  // namespace tarnwick
