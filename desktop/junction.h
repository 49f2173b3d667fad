#pragma once
// Makes and unmakes junctions: folders that lead to another. Journal and failures as in file_maker.h.

#include "desktop/journal.h"

#include <string>

namespace tarnwick::desktop {

// Wine knows no junctions. There this makes a symbolic link of the system below, which Wine shows as a folder
// with the attribute of a reparse point and follows when it is opened.
void MakeJunction(const std::string& path, const std::string& target, Journal& journal);

// Takes away the link alone; what it leads to stays.
void UnmakeJunction(const MadeThing& thing);

}  // namespace tarnwick::desktop
