#pragma once
// Which catalogue a scan reads.

#include "foundation/conversions.h"

#include <string>

namespace tarnwick {

// The path that a caller asks for: its own (UTF-8), or MasterGameList_decrypted.xml in the current directory
// for null and for an empty text. A path that can't be converted is logged and stays empty; `convert` stands
// in for the conversion in tests.
std::wstring AskedCatalogue(const char* path, std::wstring (*convert)(const std::string&) = Utf8ToWide);

// The asked path or, where that doesn't exist but MasterGameList.xml in the current directory does, the
// latter. That is logged. The path that comes back need not exist.
std::wstring ChooseCatalogue(const char* path);

}  // namespace tarnwick
