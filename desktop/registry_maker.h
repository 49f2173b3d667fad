#pragma once
// Makes and unmakes registry keys and values. Journal and failures as in file_maker.h.

#include "desktop/journal.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick::desktop {

void MakeKey(const std::string& key, View view, Journal& journal);

// `known`: this desktop has written the value before, so that its old content is in the journal already.
void MakeValue(const std::string& key, const std::string& name, View view, uint32_t type,
               std::string_view bytes, bool known, Journal& journal);

// A key that holds something else by now stays.
void UnmakeRegistry(const MadeThing& thing);

}  // namespace tarnwick::desktop
