#include "foundation/result_buffer.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

TEST(WriteResult, WritesWhatFitsInFrontOfTheZeroAndReturnsTheWholeLength) {
  const std::string text = "[1234567]";
  for (int32_t size = 1; size <= 12; ++size) {
    std::string buffer(16, '~');
    EXPECT_EQ(WriteResult(text, buffer.data(), size), 9);
    const std::string written = text.substr(0, static_cast<size_t>(size) - 1);
    EXPECT_EQ(buffer, written + '\0' + std::string(15 - written.size(), '~')) << size;
  }
}

TEST(WriteResult, WritesNothingToANullBufferOrASizeBelowOne) {
  EXPECT_EQ(WriteResult("[]", nullptr, 100), 2);
  for (const int32_t size : {0, -1, INT32_MIN}) {
    char byte = '~';
    EXPECT_EQ(WriteResult("[1]", &byte, size), 3);
    EXPECT_EQ(byte, '~');
  }
}

TEST(WriteEmptyResult, IsWrittenWholeOrAsAnEmptyText) {
  const std::pair<int32_t, std::string> expected[] = {{-1, "~~~~"},
                                                      {0, "~~~~"},
                                                      {1, std::string("\0~~~", 4)},
                                                      {2, std::string("\0~~~", 4)},
                                                      {3, std::string("{}\0~", 4)},
                                                      {4, std::string("{}\0~", 4)}};
  for (const auto& [size, bytes] : expected) {
    std::string buffer(4, '~');
    EXPECT_EQ(WriteEmptyResult("{}", buffer.data(), size), 2);
    EXPECT_EQ(buffer, bytes) << size;
  }
  EXPECT_EQ(WriteEmptyResult("[]", nullptr, 100), 2);
}

}  // namespace
}  // namespace tarnwick
