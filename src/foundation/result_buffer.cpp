// Reader: answers in a buffer.
#include "foundation/result_buffer.h"

#include <algorithm>
#include <cstring>

namespace tarnwick {

int32_t WriteResult(const std::string& text, char* buffer, int32_t size) {
  if (buffer != nullptr && size >= 1) {
    const size_t length = std::min(text.size(), static_cast<size_t>(size) - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
  }
  return static_cast<int32_t>(text.size());
}

int32_t WriteEmptyResult(const char* text, char* buffer, int32_t size) {
  if (buffer != nullptr && size >= 1) {
    // A bounded copy of the C library's would call its invalid-parameter handler here, which may end the
    // host.
    if (size <= kEmptyResultLength) {
      buffer[0] = '\0';
    } else {
      std::memcpy(buffer, text, kEmptyResultLength + 1);
    }
  }
  return kEmptyResultLength;
}

}  // namespace tarnwick
