// Stands in for the debug output where there is no Windows: the readers' log lines are gathered for their
// tests.
#include "support/native_log.h"

#include "foundation/log.h"

namespace tarnwick {

LogStream::~LogStream() {
  const std::string text = str();
  if (!text.empty()) tests::NativeLogLines().push_back(text);
}

namespace tests {

std::vector<std::string>& NativeLogLines() {
  static std::vector<std::string> lines;
  return lines;
}

}  // namespace tests
}  // namespace tarnwick
