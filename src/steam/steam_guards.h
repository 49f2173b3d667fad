#pragma once
// The guards that the Steam strategies put around their steps.

#include "foundation/log.h"

#include <exception>
#include <string>

namespace tarnwick {

// Runs `body`. A standard exception ends it and is logged as `line` with the exception's text behind; any
// other exception passes through.
template <class Body>
void LogStandardExceptions(const std::string& line, Body&& body) {
  try {
    body();
  } catch (const std::exception& error) {
    LogStream() << line << error.what() << "\n";
  }
}

// As above for "<tag> Critical Error: "; any other exception is logged as "<tag> Critical Unknown Error".
// Nothing passes.
template <class Body>
void LogCriticalErrors(const std::string& tag, Body&& body) {
  try {
    LogStandardExceptions(tag + " Critical Error: ", body);
  } catch (...) {
    LogStream() << tag << " Critical Unknown Error\n";
  }
}

}  // namespace tarnwick
