#pragma once

#include <string>

namespace tarnwick::tests {

// A name that no ANSI code page holds.
inline const std::string kOddName = "caf\xC3\xA9 \xD0\x98\xD0\xB3\xD1\x80\xD0\xB0 \xE6\xBC\xA2";

}  // namespace tarnwick::tests
