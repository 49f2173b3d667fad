#pragma once
// Registry values as bytes.

#include "common/wide_text.h"
#include "desktop/bytes.h"

#include <string>

namespace tarnwick::desktop {

// UTF-16 with its terminator.
inline std::string TerminatedUnits(const std::string& text) {
  std::string bytes;
  for (const wchar_t unit : common::Wide(text)) Append16(bytes, unit);
  Append16(bytes, 0);
  return bytes;
}

inline std::string DwordBytes(uint32_t number) {
  std::string bytes;
  Append32(bytes, number);
  return bytes;
}

}  // namespace tarnwick::desktop
