#pragma once
// A version resource as bytes: the fixed part, one string table for each translation, the list of
// translations.

#include "desktop/desktop.h"

#include <string>
#include <vector>

namespace tarnwick::desktop {

std::string VersionResourceBytes(const std::vector<VersionStrings>& versions);

}  // namespace tarnwick::desktop
