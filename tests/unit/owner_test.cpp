#include "foundation/owner.h"

#include <gmock/gmock.h>

#include <vector>

namespace tarnwick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> g_closed;

struct NumberTraits {
  using Value = int;
  static Value None() { return -1; }
  static void Close(Value number) { g_closed.push_back(number); }
};
using Number = Owner<NumberTraits>;

class OwnerTest : public testing::Test {
 protected:
  OwnerTest() { g_closed.clear(); }
};

TEST_F(OwnerTest, OwnsNothingAtFirst) {
  {
    const Number number;
    EXPECT_FALSE(number);
    EXPECT_EQ(number.Get(), -1);
  }
  EXPECT_THAT(g_closed, IsEmpty());
}

TEST_F(OwnerTest, ClosesOnceAtTheEndOfItsScope) {
  {
    const Number number(7);
    EXPECT_TRUE(number);
    EXPECT_EQ(number.Get(), 7);
  }
  EXPECT_THAT(g_closed, ElementsAre(7));
}

TEST_F(OwnerTest, ZeroIsAValueUnlessItIsTheSentinel) {
  {
    const Number number(0);
  }
  EXPECT_THAT(g_closed, ElementsAre(0));
}

TEST_F(OwnerTest, MovingHandsTheValueOn) {
  {
    Number first(1);
    Number second(std::move(first));
    EXPECT_EQ(second.Get(), 1);
    EXPECT_THAT(g_closed, IsEmpty());
    Number third(3);
    third = std::move(second);
    EXPECT_THAT(g_closed, ElementsAre(3));
  }
  EXPECT_THAT(g_closed, ElementsAre(3, 1));
}

TEST_F(OwnerTest, MovingToItselfKeepsTheValue) {
  Number number(4);
  Number& same = number;
  number = std::move(same);
  EXPECT_EQ(number.Get(), 4);
  EXPECT_THAT(g_closed, IsEmpty());
}

TEST_F(OwnerTest, ReleaseGivesTheValueAway) {
  {
    Number number(5);
    EXPECT_EQ(number.Release(), 5);
    EXPECT_FALSE(number);
  }
  EXPECT_THAT(g_closed, IsEmpty());
}

TEST_F(OwnerTest, ResetClosesAtOnceAndOnlyOnce) {
  Number number(6);
  number.Reset();
  number.Reset();
  EXPECT_FALSE(number);
  EXPECT_THAT(g_closed, ElementsAre(6));
}

TEST_F(OwnerTest, ReceiveEndsWhatWasOwnedBefore) {
  {
    Number number(8);
    int* place = number.Receive();
    EXPECT_THAT(g_closed, ElementsAre(8));
    EXPECT_EQ(*place, -1);
    *place = 9;
  }
  EXPECT_THAT(g_closed, ElementsAre(8, 9));
}

TEST_F(OwnerTest, EachKindHasItsOwnSentinel) {
  EXPECT_EQ(RegistryHandle().Get(), nullptr);
  EXPECT_EQ(Handle().Get(), nullptr);
  EXPECT_EQ(FindHandle().Get(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(Icon().Get(), nullptr);
}

TEST_F(OwnerTest, ClosesARealHandle) {
  const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  DWORD flags = 0;
  {
    const Handle owner(event);
    EXPECT_TRUE(GetHandleInformation(event, &flags));
  }
  EXPECT_FALSE(GetHandleInformation(event, &flags));
}

TEST_F(OwnerTest, ReleasesComObjects) {
  struct Object {
    int released = 0;
    void Release() { ++released; }
  } object;
  {
    const ComPointer<Object> pointer(&object);
  }
  EXPECT_EQ(object.released, 1);
}

}  // namespace
}  // namespace tarnwick
