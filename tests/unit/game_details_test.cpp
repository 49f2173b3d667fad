// Failures; what a good answer holds is tested through the export.
#include "core/game_details.h"

#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "support/debug_capture.h"
#include "support/guarded_buffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>

#include <stdexcept>
#include <thread>

namespace tarnwick {
namespace {

using testing::ElementsAre;

std::string NoIcon(const std::wstring&) { return {}; }
std::string Broken(const std::wstring&) { throw std::runtime_error("no picture"); }
std::string Odd(const std::wstring&) { throw 7; }

class GameDetails : public testing::Test {
 protected:
  void SetUp() override { desktop_.Executable(kPath); }

  static constexpr char kPath[] = R"(C:\TarnwickTest\GameDetails\foo.exe)";
  desktop::Desktop desktop_;
};

TEST_F(GameDetails, WithoutAnIconTheMemberIsEmpty) {
  const tests::GuardedBuffer buffer(200);
  WriteGameDetails(kPath, buffer.Data(), buffer.Size(), NoIcon);
  EXPECT_EQ(buffer.Text(),
            R"({"name":"foo","ico":"","exepath":"C:\\TarnwickTest\\GameDetails\\foo.exe","exe":"foo.exe"})");
}

TEST_F(GameDetails, StandardExceptionIsLoggedAndAnsweredWithAnEmptyObject) {
  const tests::GuardedBuffer buffer(200);
  const tests::DebugCapture capture;
  EXPECT_EQ(WriteGameDetails(kPath, buffer.Data(), buffer.Size(), Broken), 2);
  EXPECT_EQ(buffer.Text(), "{}");
  EXPECT_THAT(capture.Lines(), ElementsAre("CRITICAL ERROR in IA_GetGameDetailsByPathJson: no picture"));
}

TEST_F(GameDetails, OtherExceptionIsLoggedAndAnsweredWithAnEmptyObject) {
  const tests::GuardedBuffer buffer(200);
  const tests::DebugCapture capture;
  EXPECT_EQ(WriteGameDetails(kPath, buffer.Data(), buffer.Size(), Odd), 2);
  EXPECT_EQ(buffer.Text(), "{}");
  EXPECT_THAT(capture.Lines(),
              ElementsAre("CRITICAL ERROR: Unknown exception in IA_GetGameDetailsByPathJson."));
}

TEST_F(GameDetails, ExceptionsWriteNothingWithoutABufferAndLeaveCom) {
  const tests::GuardedBuffer buffer(8);
  std::thread([&] {
    EXPECT_EQ(WriteGameDetails(kPath, nullptr, 8, Odd), 2);
    EXPECT_EQ(WriteGameDetails(kPath, buffer.Data(), 0, Broken), 2);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    CoUninitialize();
  }).join();
  EXPECT_TRUE(buffer.Untouched());
}

}  // namespace
}  // namespace tarnwick
