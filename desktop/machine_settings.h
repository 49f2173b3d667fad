#pragma once
// The known folders and environment variables of a machine, as the registry holds them.

#include "desktop/desktop.h"

#include <string>

namespace tarnwick::desktop {

// Is the name one of "roaming data", "local data", "common data", "program files", "program files (x86)"?
bool IsKnownFolder(const std::string& name);

// Programs that start from now on are told this folder.
void SetKnownFolder(Desktop& desktop, const std::string& name, const std::string& path);

// Under Wine, programs started from the system below have the variable from now on; on Windows, those started
// by a user who signed in since. Variables without which no program runs here stay as they are.
void SetVariable(Desktop& desktop, const std::string& name, const std::string& text);

}  // namespace tarnwick::desktop
