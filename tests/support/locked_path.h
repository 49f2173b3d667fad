#pragma once
// A file or folder that no one else may open, as while a launcher writes it or a virus scanner reads it.

#include "foundation/conversions.h"
#include "foundation/owner.h"

#include <stdexcept>
#include <string>

namespace tarnwick::tests {

class LockedPath {
 public:
  explicit LockedPath(const std::string& path) {
    HANDLE opened = CreateFileW(Utf8ToWide(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) throw std::runtime_error("can't lock " + path);
    handle_ = Handle(opened);
  }

 private:
  Handle handle_;
};

// A path of which not even the existence can be asked: the answer is an error, but not "not found".
inline const std::string kUnaskablePath = R"(\\.\TarnwickNoSuchDevice)";

}  // namespace tarnwick::tests
