#pragma once
// What the tests of the strategies begin with: a desktop to put games on, and the log.

#include "desktop/desktop.h"
#include "support/debug_capture.h"
#include "support/describe.h"
#include "support/failing_allocation.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tarnwick::tests {

// A game's name that no ANSI code page holds.
inline const std::string kOddName = "caf\xC3\xA9 \xD0\x98\xD0\xB3\xD1\x80\xD0\xB0 \xE6\xBC\xA2";

class StrategyTest : public testing::Test {
 protected:
  desktop::Desktop desktop_;
  DebugCapture capture_;
};

// What a search gives where a text of this many bytes, or more, gets no memory.
template <typename Search>
std::vector<std::string> WithoutMemory(size_t bytes, const Search& search) {
  const FailingAllocation failing(bytes);
  return search();
}

}  // namespace tarnwick::tests
