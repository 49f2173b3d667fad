#pragma once
// The buffer contract of the exports, from a host's side.

#include <cstddef>
#include <string>

namespace tarnwick::host {

// Room for a few hundred icons: a scan that has to be run again for its last bytes costs its whole time once
// more.
inline constexpr size_t kFirstBufferBytes = 4u << 20;

// Calls `fill(buffer, size)`, an export that returns the length of its whole text, until the text fits; a
// text that was cut is asked for again with room for all of it. The text can grow between two calls, hence
// the loop.
template <class Fill>
std::string CallWithGrowingBuffer(const Fill& fill) {
  std::string text(kFirstBufferBytes, '\0');
  for (;;) {
    const int length = fill(text.data(), static_cast<int>(text.size()));
    if (length < 0) return {};
    const auto needed = static_cast<size_t>(length);
    if (needed < text.size()) {
      text.resize(needed);
      return text;
    }
    text.assign(needed + needed / 8 + 1, '\0');
  }
}

}  // namespace tarnwick::host
