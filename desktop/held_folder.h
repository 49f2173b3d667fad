#pragma once
// Folders that exist and can't be listed. A program that holds such a folder open for itself alone makes it
// so on Windows and under Wine, whoever asks: permissions stop neither administrators nor root.
//
// Journal and failures as in file_maker.h.

#include "desktop/journal.h"

#include <string>

namespace tarnwick::desktop {

// Starts `tarnwick-desktop hold` from the folder of this program and waits until it holds the folder.
void HoldFolderApart(const std::string& path, Journal& journal);

// Ends that program. If it is gone already, as after a restart of the machine, so is what it did.
void LetFolderGo(const MadeThing& thing);

// What that program does: holds the folder until it is let go.
void HoldFolderHere(const std::string& path);

}  // namespace tarnwick::desktop
