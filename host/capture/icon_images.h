#pragma once
// The icons that a program or an .ico file carries, each size that is really there as PNG.

#include <cstddef>
#include <string>
#include <vector>

namespace tarnwick::host {

struct IconPicture {
  int size = 0;     // pixels
  std::string png;  // its bytes
};

using IconPictures = std::vector<IconPicture>;  // of one icon, by size
using IconGroups = std::vector<IconPictures>;   // of one file, in its own order

// A file of more icons is a library of them: those behind these are left out.
inline constexpr size_t kMostIconGroups = 64;

// Empty where there are none. An icon that can't be read is passed over. COM must be set up on the thread.
IconGroups IconsOfProgram(const std::wstring& path);
IconGroups IconsOfIconFile(const std::string& bytes);

}  // namespace tarnwick::host
