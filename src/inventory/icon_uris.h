#pragma once
// Icons as the data URIs that the JSON texts carry, for those who want the text and no icon.

#include "inventory/app_record.h"

#include <string>

namespace tarnwick {

// Each is the icon's PNG as a data URI, or that of the system's generic application icon where there is none
// of its own; empty if not even that is to be had. COM must be set up on the calling thread.
std::string AppIconUri(const AppRecord& record);    // by ResolveAppIcon
std::string FileIconUri(const std::wstring& path);  // by LoadIconFromFile, the first icon

// Fills IconDataUri and sets IconLoaded; does nothing where that is set already. Sets up COM for itself. The
// caller holds g_cacheLock if the record is in the cache.
void LoadAppIconLazy(AppRecord& record);

// For a path that names no file because a title's colon could not stand in a file name: the path with its
// second colon replaced by U+FF1A or, failing that, by an underscore, if that exists. Otherwise the path as
// it was. Later colons stay.
std::wstring MendSecondColon(const std::wstring& path);

}  // namespace tarnwick
