#include "steam/steam_guards.h"

#include "support/debug_capture.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SteamGuards, ABodyThatEndsLogsNothing) {
  const tests::DebugCapture log;
  int ran = 0;
  LogCriticalErrors("[X]", [&] { ++ran; });
  EXPECT_EQ(ran, 1);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(SteamGuards, CriticalErrorsLetNothingPass) {
  const tests::DebugCapture log;
  LogCriticalErrors("[SteamAppInfo]", [] { throw std::out_of_range("why"); });
  LogCriticalErrors("[SteamDefaultId]", [] { throw 7; });
  EXPECT_THAT(log.Lines(),
              ElementsAre("[SteamAppInfo] Critical Error: why", "[SteamDefaultId] Critical Unknown Error"));
}

}  // namespace
}  // namespace tarnwick
