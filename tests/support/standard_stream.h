#pragma once
// One of this process's standard streams, taken to be read by the test.

#include "foundation/windows_api.h"

#include <string>

namespace tarnwick::tests {

// What the program writes to the stream while this lives goes into a pipe, which holds a megabyte. GoogleTest
// writes by way of the C library, whose streams stay where they were.
class StandardStream {
 public:
  explicit StandardStream(DWORD stream);  // STD_OUTPUT_HANDLE or STD_ERROR_HANDLE
  ~StandardStream();
  StandardStream(const StandardStream&) = delete;
  StandardStream& operator=(const StandardStream&) = delete;

  // Ends the pipe, from its writer's side or from its reader's. Neither can be undone.
  std::string Text();
  void LoseReader();

 private:
  DWORD stream_;
  HANDLE before_;
  HANDLE read_ = nullptr;
  HANDLE write_ = nullptr;
};

}  // namespace tarnwick::tests
