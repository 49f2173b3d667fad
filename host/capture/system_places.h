#pragma once
// What belongs to Windows itself. A capture passes over it: it tells nothing about games, stands on every
// machine, and whoever builds the captured machine has it already.

#include "host/capture/asked_places.h"

#include <string>

namespace tarnwick::host {

// Everything outside of HKEY_LOCAL_MACHINE\SOFTWARE and HKEY_CURRENT_USER\Software, and what is Windows' own
// there, but for the places where applications register.
bool IsSystemKey(const KeyPlace& place);

// Such as C:\Windows.
bool IsSystemPath(const std::wstring& path);

}  // namespace tarnwick::host
