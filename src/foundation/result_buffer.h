#pragma once
// Answers in a caller's buffer.

#include <cstdint>
#include <string>

namespace tarnwick {

// Copies as much of the text as fits in front of a terminating zero, cut wherever that falls. Nothing is
// written to a null buffer or one of size below 1. Returns the length of the whole text, truncated to 32
// bits.
int32_t WriteResult(const std::string& text, char* buffer, int32_t size);

inline constexpr int32_t kEmptyResultLength = 2;

// The two-character texts of failures, "[]" and "{}", which are written whole or not at all: a buffer of 1 or
// 2 bytes gets an empty text. Returns 2.
int32_t WriteEmptyResult(const char* text, char* buffer, int32_t size);

}  // namespace tarnwick
