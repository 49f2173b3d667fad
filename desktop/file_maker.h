#pragma once
// Makes and unmakes files and folders. Each function appends what it really made to the journal, and nothing
// for what stood there already. Throws std::runtime_error with the path in its text.

#include "desktop/journal.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick::desktop {

void MakeFolder(const std::string& path, Journal& journal);
void MakeFolderOf(const std::string& path, Journal& journal);  // the folder that holds `path`

// Writes the bytes, and zeros behind them up to `size`. `known`: this desktop has written the file before, so
// that its old content is in the journal already.
void MakeFile(const std::string& path, std::string_view bytes, uint64_t size, bool sparse, bool known,
              Journal& journal);
void SetModifiedTime(const std::string& path, int64_t unixSeconds, bool known, Journal& journal);

// Takes one thing away or puts its old content back. What is gone already is no failure; a folder that holds
// something else stays.
void UnmakeFile(const MadeThing& thing);

}  // namespace tarnwick::desktop
