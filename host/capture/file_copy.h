#pragma once
// Folders and files as they stand.

#include "host/capture/machine_copy.h"

namespace tarnwick::host {

// Appends what stands at the path to the list where it belongs. The path is spelled as SpelledPath does. COM must be set up on the thread.
void CopyPath(const AskedPath& asked, MachineCopy& copy);

// The file whole, whatever its length.
void CopyWholeFile(const std::wstring& path, MachineCopy& copy);

// A path as the folders on its way spell it; one that isn't there as it is.
std::wstring SpelledPath(const std::wstring& path);

}  // namespace tarnwick::host
