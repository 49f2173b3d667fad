#pragma once
// The one way into the Windows headers, so that every unit sees them with the same switches.
// Edge units include this; readers never do.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
