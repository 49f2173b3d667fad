#include "host/failure.h"

#include <exception>
#include <new>
#include <string>

#include "host/console.h"
#include "host/options.h"
#include "host/progress.h"
#include "host/text_width.h"

namespace tarnwick::host {

void ReportLine(std::string_view text) noexcept {
  try {
    DrawProgress("");
    WriteStandardError("tarnwick: " + PrintableText(std::string(text)) + "\n");
  } catch (...) {
    // There is no memory for the line, so it can't be why.
    WriteStandardError("tarnwick: out of memory\n");
  }
}

int RunReportingFailures(const std::function<int()>& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    ReportLine("out of memory");
  } catch (const std::exception& error) {
    ReportLine(error.what());
  } catch (...) {
    ReportLine("an error of unknown kind");
  }
  return kExitFailure;
}

}  // namespace tarnwick::host
