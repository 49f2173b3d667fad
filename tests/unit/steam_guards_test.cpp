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
  LogStandardExceptions("x: ", [&] { ++ran; });
  LogCriticalErrors("[X]", [&] { ++ran; });
  EXPECT_EQ(ran, 2);
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST(SteamGuards, AStandardExceptionIsLoggedWithItsText) {
  const tests::DebugCapture log;
  LogStandardExceptions("[X] Error (é): ", [] { throw std::runtime_error("why"); });
  EXPECT_EQ(log.Raw(), std::vector<std::string>{"[Tarnwick] [X] Error (é): why\n"});
}

TEST(SteamGuards, AnyOtherExceptionPasses) {
  const tests::DebugCapture log;
  EXPECT_THROW(LogStandardExceptions("x: ", [] { throw 7; }), int);
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
