#include "support/standard_stream.h"

#include <stdexcept>
#include <utility>

namespace tarnwick::tests {
namespace {

void Close(HANDLE& handle) {
  if (handle != nullptr) CloseHandle(std::exchange(handle, nullptr));
}

}  // namespace

StandardStream::StandardStream(DWORD stream) : stream_(stream), before_(GetStdHandle(stream)) {
  if (!CreatePipe(&read_, &write_, nullptr, 1 << 20)) throw std::runtime_error("can't make a pipe");
  SetStdHandle(stream, write_);
}

StandardStream::~StandardStream() {
  SetStdHandle(stream_, before_);
  Close(write_);
  Close(read_);
}

std::string StandardStream::Text() {
  SetStdHandle(stream_, before_);
  Close(write_);
  std::string text;
  char buffer[4096];
  for (DWORD count = 0; ReadFile(read_, buffer, sizeof buffer, &count, nullptr) && count > 0;)
    text.append(buffer, count);
  return text;
}

void StandardStream::LoseReader() { Close(read_); }

}  // namespace tarnwick::tests
