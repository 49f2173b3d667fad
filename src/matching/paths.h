#pragma once
// Path operations that ask Windows: joins, tokens, and the places where a signature's executable may lie.
// UTF-8 in, UTF-8 out, empty means nothing. The purely textual ones are in path_text.h, the tests for
// existence in foundation/machine/paths.h.

#include "catalogue/game_signature.h"
#include "foundation/machine/paths.h"
#include "matching/path_text.h"

#include <string>
#include <vector>

namespace tarnwick {

// PathCombineW into 260 characters; separators at the second path's start are dropped unless it begins with
// two.
std::string CombinePath(const std::string& first, const std::string& second);

std::string GetParentFolder(const std::string& path);

// The plain field, else the 64 field in a process under WOW64, else the 32 field.
std::string GetDefaultExe(const GameSignature& signature);
std::string GetDefaultFolder(const GameSignature& signature);
std::string GetDefaultFolderExe(const GameSignature& signature);

// %ProgramFiles%, %ProgramFiles(x86)% and environment variables. The character behind %ProgramFiles% goes
// with it.
std::string ExpandPathTokens(const std::string& text);

// A catalogue folder put on another drive ("C:\" if `driveRoot` is empty). Throws std::out_of_range for a
// folder that is nothing but a drive letter and its colon.
std::string BuildDrivePath(const std::string& driveRoot, const std::string& folder, const std::string& exe);
std::string ResolveDefaultExePath(const GameSignature& signature, const std::string& driveRoot);

// `merge` drops the fragment's first segment where the folder has it already.
std::string JoinFolderFragment(const std::string& folder, const std::string& fragment, bool merge);

// exePath itself, then one path for each fragment: its segments moved to the end of exePath's folder.
std::vector<std::string> BuildFolderCandidates(const std::string& exePath,
                                               const std::vector<std::string>& fragments);

// The first of the signature's DefaultExe, DefaultExe32 and DefaultExe64 that is an existing file in the
// folder; empty if none is.
std::string FirstExistingDefaultExe(const std::string& folder, const GameSignature& signature);

// The first executable that an install text, taken as a command line, leads to.
std::string ResolveExeFromInstallText(const std::string& text, const GameSignature& signature);

}  // namespace tarnwick
