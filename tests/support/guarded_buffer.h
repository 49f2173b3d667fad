#pragma once
// A buffer whose next byte can't be touched: a write behind its end faults at once, instead of going unseen.

#include <cstddef>
#include <string>

namespace tarnwick::tests {

class GuardedBuffer {
 public:
  static constexpr char kUntouched = '\x7E';

  // `size` writable bytes, all kUntouched, in front of an inaccessible page.
  explicit GuardedBuffer(int size);
  ~GuardedBuffer();
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  char* Data() const { return data_; }
  int Size() const { return size_; }

  // What stands in front of the terminating zero; throws std::runtime_error if there is none.
  std::string Text() const;

  // True if no byte was written.
  bool Untouched() const;

 private:
  char* pages_;
  char* data_;
  int size_;
};

}  // namespace tarnwick::tests
