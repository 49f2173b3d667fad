#include "support/guarded_buffer.h"

#include "foundation/windows_api.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace tarnwick::tests {
namespace {
constexpr size_t kPage = 4096;
}

GuardedBuffer::GuardedBuffer(int size) : size_(size) {
  const size_t room = (static_cast<size_t>(size) + kPage - 1) / kPage * kPage;
  pages_ = static_cast<char*>(VirtualAlloc(nullptr, room + kPage, MEM_RESERVE, PAGE_NOACCESS));
  if (pages_ == nullptr) throw std::bad_alloc();
  if (room > 0 && VirtualAlloc(pages_, room, MEM_COMMIT, PAGE_READWRITE) == nullptr) throw std::bad_alloc();
  data_ = pages_ + room - size;
  std::fill_n(data_, size, kUntouched);
}

GuardedBuffer::~GuardedBuffer() { VirtualFree(pages_, 0, MEM_RELEASE); }

std::string GuardedBuffer::Text() const {
  const char* end = std::find(data_, data_ + size_, '\0');
  if (end == data_ + size_) throw std::runtime_error("the buffer holds no terminating zero");
  return std::string(static_cast<const char*>(data_), end);
}

bool GuardedBuffer::Untouched() const {
  return std::all_of(data_, data_ + size_, [](char byte) { return byte == kUntouched; });
}

}  // namespace tarnwick::tests
