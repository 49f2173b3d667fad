#pragma once
// An environment variable of this process for the length of a scope.

#include "foundation/windows_api.h"

#include <string>
#include <vector>

namespace tarnwick::tests {

class EnvironmentVariable {
 public:
  // Null takes the variable away.
  EnvironmentVariable(const std::string& name, const char* value) : name_(name) {
    std::vector<char> old(32768);
    existed_ = GetEnvironmentVariableA(name.c_str(), old.data(), static_cast<DWORD>(old.size())) > 0;
    if (existed_) old_ = old.data();
    SetEnvironmentVariableA(name.c_str(), value);
  }
  ~EnvironmentVariable() { SetEnvironmentVariableA(name_.c_str(), existed_ ? old_.c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  std::string name_;
  std::string old_;
  bool existed_ = false;
};

}  // namespace tarnwick::tests
