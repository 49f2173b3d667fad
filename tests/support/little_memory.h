#pragma once
// A program that includes this, in one unit, has little memory: an allocation of more than 64 MiB fails as it
// would where memory has run out. The sanitizers' own limit ends the program instead.

#include <cstddef>
#include <cstdlib>
#include <new>

void* operator new(size_t bytes) {
  constexpr size_t kMost = size_t{64} << 20;
  void* memory = bytes > kMost ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, size_t) noexcept { std::free(memory); }

// Some blocks come from the sanitizer's operator new, inside of the fuzzer's runtime, and end in the operator
// delete above: AddressSanitizer would report the mismatch.
extern "C" const char* __asan_default_options() { return "alloc_dealloc_mismatch=0"; }
