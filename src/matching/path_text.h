#pragma once
// Path operations that only look at the text. UTF-8 in, UTF-8 out; empty means nothing.

#include <string>
#include <vector>

namespace tarnwick {

// A command line's tokens: split at blanks and tabs outside double quotes. A quote that closes ends the
// token, one that opens doesn't.
std::vector<std::string> SplitCommandLine(const std::string& text);

// From the last dot of the whole path on, folder names included; empty if there is none or it is the last
// character.
std::string GetExtension(const std::string& path);

// False if either is empty.
bool ContainsIgnoreCase(const std::string& text, const std::string& needle);

// The non-empty pieces between '|', untrimmed.
std::vector<std::string> SplitPipeList(const std::string& text);

// The non-empty pieces between backslashes.
std::vector<std::string> SplitPathSegments(const std::string& path);

// Backslashes only; a single leading backslash is dropped, a leading double one stays.
std::string NormalizeFragment(const std::string& text);

// Does some folder segment equal the fragment's first segment, without regard to case?
bool FolderOverlapsFragment(const std::string& folder, const std::string& fragment);

// Folder and fragment joined, the fragment's first segment dropped where the folder has it already.
std::string MergeOverlappingFragment(const std::string& folder, const std::string& fragment);

}  // namespace tarnwick
