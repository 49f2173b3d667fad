#include "host/library_call.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

// An export that answers with `texts` in turn, by the buffer contract, and notes the sizes it was given.
struct FakeExport {
  std::vector<std::string> texts;
  std::vector<int> sizes;

  int operator()(char* buffer, int size) {
    const std::string& text = texts[std::min(sizes.size(), texts.size() - 1)];
    sizes.push_back(size);
    const size_t count = std::min(text.size(), static_cast<size_t>(size) - 1);
    std::memcpy(buffer, text.data(), count);
    buffer[count] = '\0';
    return static_cast<int>(text.size());
  }
};

TEST(HostLibraryCall, TakesATextThatFitsAtOnce) {
  FakeExport fake{{"[]"}, {}};
  EXPECT_EQ(CallWithGrowingBuffer(std::ref(fake)), "[]");
  EXPECT_EQ(fake.sizes.size(), 1u);
}

TEST(HostLibraryCall, AsksAgainForATextThatWasCut) {
  const std::string text(kFirstBufferBytes * 2, 'x');
  FakeExport fake{{text}, {}};
  EXPECT_EQ(CallWithGrowingBuffer(std::ref(fake)), text);
  EXPECT_EQ(fake.sizes.size(), 2u);
}

TEST(HostLibraryCall, AsksAgainForATextOfExactlyTheBuffersSizeBecauseItsTerminatorHadNoRoom) {
  const std::string text(kFirstBufferBytes, 'x');
  FakeExport fake{{text}, {}};
  EXPECT_EQ(CallWithGrowingBuffer(std::ref(fake)), text);
  EXPECT_EQ(fake.sizes.size(), 2u);
}

TEST(HostLibraryCall, GoesOnForATextThatGrowsBetweenCalls) {
  FakeExport fake{{std::string(kFirstBufferBytes, 'a'), std::string(kFirstBufferBytes * 3, 'b')}, {}};
  EXPECT_EQ(CallWithGrowingBuffer(std::ref(fake)), fake.texts[1]);
  EXPECT_EQ(fake.sizes.size(), 3u);
}

}  // namespace
}  // namespace tarnwick::host
