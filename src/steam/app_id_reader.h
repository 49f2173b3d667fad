#pragma once
// Steam's app ids as numbers.

#include <cstdint>
#include <string>

namespace tarnwick {

// A decimal text by the rules of strtoul with 32 bits: leading white space and a sign are accepted, a minus
// sign negates modulo 2^32, and what stands behind the digits is ignored. Throws std::invalid_argument with
// "invalid stoul argument" where there are no digits, and std::out_of_range with "stoul argument out of
// range" beyond 4294967295.
uint32_t ParseAppId(const std::string& text);

}  // namespace tarnwick
