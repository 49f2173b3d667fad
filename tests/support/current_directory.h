#pragma once
// The process's current directory, for the length of a scope.

#include <string>

namespace tarnwick::tests {

// Goes to an existing folder (UTF-8), and back at the end. Throws std::runtime_error if it can't go there.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const std::string& folder);
  ~CurrentDirectory();
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;

 private:
  std::wstring before_;
};

}  // namespace tarnwick::tests
