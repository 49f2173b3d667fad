#include "matching/signatures.h"

#include "support/debug_capture.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

GameSignature WithGuid(const std::string& guid) {
  GameSignature signature;
  signature.DisplayName = "Foo";
  signature.GameGUID = guid;
  return signature;
}

TEST(Signatures, AnEmptyGuidAndTheOneOfZerosAreNone) {
  EXPECT_FALSE(HasGameGuid(WithGuid("")));
  EXPECT_FALSE(HasGameGuid(WithGuid("00000000-0000-0000-0000-000000000000")));
  EXPECT_TRUE(HasGameGuid(WithGuid("00000000-0000-0000-0000-000000000001")));
  EXPECT_TRUE(HasGameGuid(WithGuid("{00000000-0000-0000-0000-000000000000}")));
  EXPECT_TRUE(HasGameGuid(WithGuid("0")));
}

TEST(GuardSignature, IsSilentForABodyThatEnds) {
  tests::DebugCapture capture;
  int ran = 0;
  GuardSignature("[X] ", WithGuid(""), [&] { ++ran; });
  EXPECT_EQ(ran, 1);
  EXPECT_THAT(capture.Raw(), IsEmpty());
}

TEST(GuardSignature, LogsAnOrdinaryFailure) {
  tests::DebugCapture capture;
  GuardSignature("[X] ", WithGuid(""), [] { throw std::runtime_error("no luck"); });
  EXPECT_THAT(capture.Raw(), ElementsAre("[Tarnwick] [X] Error finding game (Foo): no luck\n"));
}

TEST(GuardSignature, LetsOtherExceptionsPass) {
  tests::DebugCapture capture;
  EXPECT_THROW(GuardSignature("[X] ", WithGuid(""), [] { throw 7; }), int);
  EXPECT_THAT(capture.Raw(), IsEmpty());
}

}  // namespace
}  // namespace tarnwick
