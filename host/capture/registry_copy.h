#pragma once
// Keys and values as the registry holds them.

#include "host/capture/machine_copy.h"

namespace tarnwick::host {

struct KeyCopies {
  std::vector<KeyCopy> keys;         // those that are there, with what was asked of them
  std::vector<std::string> missing;  // the others' texts
};

KeyCopies CopyKeys(const AskedPlaces& places, const KeyTest& leftOut);

}  // namespace tarnwick::host
