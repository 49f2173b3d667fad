#pragma once
// Memory that runs out at one oversized text, for tests of what a std::exception in the middle of a reading
// leaves.

#include <cstddef>
#include <cstdint>

namespace tarnwick::tests {

// For the length of a scope, every allocation of this thread of `bytes` or more, up to `most`, throws
// std::bad_alloc.
class FailingAllocation {
 public:
  explicit FailingAllocation(size_t bytes, size_t most = SIZE_MAX);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
};

}  // namespace tarnwick::tests
