#pragma once
// A folder of a test's own below C:\TarnwickTest, empty at first and gone at the end. Texts are UTF-8.

#include <string>
#include <string_view>

namespace tarnwick::tests {

class ScratchFolder {
 public:
  explicit ScratchFolder(const std::string& name);
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::string& Path() const { return path_; }

  // Writes a file, parent folders included, and returns its full path.
  std::string File(const std::string& relativePath, std::string_view bytes) const;

 private:
  std::string path_;
};

}  // namespace tarnwick::tests
