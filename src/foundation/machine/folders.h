#pragma once
// What a folder holds.

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct FolderEntry {
  std::wstring path;  // UTF-16 as the system has it; a name need not be valid UTF-16
  std::wstring name;
};

// A folder's entries in the order of the file system, and what ended the list early, if anything: a
// std::filesystem::filesystem_error, whose text reaches the log. What was listed before it counts.
struct FolderListing {
  std::vector<FolderEntry> entries = {};
  std::exception_ptr failure = nullptr;
  std::string openingError = {};  // ListFoldersIfOpen alone: why the folder couldn't be opened
};

using NameTest = bool(std::wstring_view name);

// The regular files of a folder whose names pass the test, all of them for a null test; links are followed.
FolderListing ListFiles(const std::string& folder, NameTest* wanted);
FolderListing ListFiles(const std::wstring& folder, NameTest* wanted);

// Its folders, links to folders among them.
FolderListing ListFolders(const std::string& folder);

// Its folders; a folder that can't be opened has none.
FolderListing ListFoldersIfOpen(const std::string& folder);

// The regular files of a folder and, in the deep form, of all folders below, but not of those behind
// junctions, symbolic links or other reparse points: a loop of them would never end. The text of a failure
// differs from that of ListFiles.
FolderListing WalkFiles(const std::string& folder, NameTest* wanted);
FolderListing WalkFilesDeep(const std::string& folder, NameTest* wanted);

// Calls `visit` for each entry, then throws the failure, if there is one.
void ForEach(const FolderListing& listing, const std::function<void(const FolderEntry&)>& visit);

}  // namespace tarnwick
