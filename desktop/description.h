#pragma once
// A whole desktop described in JSON, for the demo, tests and scripts. docs/desktop.md tells the format.

#include "desktop/desktop.h"

#include <string>

namespace tarnwick::desktop {

// Makes everything that the description tells, in the order of its sections in the documentation. Throws
// std::runtime_error: for a fault of the description with the place in it, such as
// "at /steam/libraries/0: missing member 'path'", otherwise with the place whose making failed. What was made
// until then belongs to the desktop and goes with it.
void ApplyDescription(Desktop& desktop, const std::string& json);

// What a state file holds: all that a desktop made, for another process to remove; and the way back.
std::string StateText(const Desktop& desktop);
Desktop DesktopFromState(const std::string& json);

}  // namespace tarnwick::desktop
