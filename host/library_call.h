#pragma once
// The library as every host gets it: loaded at run time, by its public headers.

#include "tarnwick/tarnwick.hpp"

namespace tarnwick::host {

// Tarnwick.dll from the program's own folder, loaded at the first call and kept. Throws tarnwick::Error where
// it can't be loaded. Loading it logs a line, so it must be here before a capture of the log begins.
const Library& TheLibrary();

}  // namespace tarnwick::host
