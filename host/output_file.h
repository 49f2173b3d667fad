#pragma once
// Bytes to files and other outputs, with the system's word for what went wrong.

#include <memory>
#include <string>
#include <string_view>

namespace tarnwick::host {

using SystemError = unsigned long;  // of Windows; 0 is success

// Writes all of the bytes to a handle of Windows.
SystemError WriteBytes(void* handle, std::string_view bytes) noexcept;

// What the system calls the error, in UTF-8: one line without a full stop.
std::string SystemErrorText(SystemError error);

struct HandleCloser {
  void operator()(void* handle) const noexcept;
};

// A file that is written anew. Both functions throw std::runtime_error with the file's name and the reason.
class OutputFile {
 public:
  explicit OutputFile(const std::string& path);
  void Write(std::string_view bytes);

 private:
  std::string path_;
  std::unique_ptr<void, HandleCloser> handle_;
};

}  // namespace tarnwick::host
