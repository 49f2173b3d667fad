#pragma once
// What a desktop made, step by step: enough to take it away again later, even in another process.

#include "desktop/desktop.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::desktop {

// What stood in a file or value before this desktop wrote there.
struct OldContent {
  std::string bytes;
  uint32_t type = 0;  // of a value
  uint64_t time = 0;  // of a file: when it was last written, as FILETIME
};

struct MadeThing {
  enum class Kind { kFolder, kLink, kFile, kTime, kKey, kValue, kHold };
  Kind kind = Kind::kFolder;
  std::string place;                 // path of a file, folder (held ones too) or link, or a registry key
  std::string name;                  // of a value
  View view = View::kNative;         // of a key or value
  std::optional<OldContent> before;  // none: nothing stood there
};

using Journal = std::vector<MadeThing>;

}  // namespace tarnwick::desktop
