// The test programs' own operator new.
#include "support/failing_allocation.h"

#include "foundation/windows_api.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<size_t> g_limit{SIZE_MAX};
std::atomic<size_t> g_most{SIZE_MAX};
std::atomic<DWORD> g_thread{0};

}  // namespace

void* operator new(size_t size) {
  if (size >= g_limit && size <= g_most && g_thread == GetCurrentThreadId()) throw std::bad_alloc();
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

namespace tarnwick::tests {

FailingAllocation::FailingAllocation(size_t bytes, size_t most) {
  g_thread = GetCurrentThreadId();
  g_most = most;
  g_limit = bytes;
}

FailingAllocation::~FailingAllocation() { g_limit = SIZE_MAX; }

}  // namespace tarnwick::tests
