// Edge: listing folders.
#include "foundation/machine/folders.h"

#include "foundation/conversions.h"
#include "foundation/machine/observer.h"
#include "foundation/windows_api.h"

#include <filesystem>
#include <system_error>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// A way of listing: its name for observers, and the standard library's error text where the folder can't be
// opened; null where that is no error.
struct Way {
  const char* name;
  const char* refusal;
};

constexpr Way kFiles = {"files", "directory iterator cannot open directory"};
constexpr Way kFolders = {"folders", "directory iterator cannot open directory"};
constexpr Way kOpenFolders = {"folders, if it can be opened", nullptr};
constexpr Way kWalk = {"files", "recursive directory iterator cannot open directory"};
constexpr Way kDeepWalk = {"files, deep", "recursive directory iterator cannot open directory"};

bool IsReparsePoint(const fs::path& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool Passes(const fs::path& path, NameTest* wanted) {
  return wanted == nullptr || wanted(path.filename().native());
}

void Append(FolderListing& listing, const fs::path& path) {
  listing.entries.push_back({path.native(), path.filename().native()});
}

FolderListing Refused(const std::wstring& folder, const Way& way) {
  FolderListing listing;
  if (way.refusal == nullptr) return listing;
  listing.failure = std::make_exception_ptr(
      fs::filesystem_error(way.refusal, folder, std::make_error_code(std::errc::permission_denied)));
  return listing;
}

std::string WhyEnded(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    return error.what();
  }
}

Answer TellListing(const FolderListing& listing) {
  Answer answer{listing.failure == nullptr, {}};
  for (const FolderEntry& entry : listing.entries) answer.text += WideToUtf8(entry.path) + '\n';
  if (listing.failure != nullptr) answer.text += WhyEnded(listing.failure);
  return answer;
}

// `list` appends to the listing it is given; what it throws becomes the listing's failure.
template <class List>
FolderListing AskListing(const std::wstring& folder, const Way& way, List&& list) {
  return machine::AskMachine(
      [&] { return Question{QuestionKind::kListFolder, WideToUtf8(folder), way.name, {}, {}}; },
      [&] { return Refused(folder, way); },
      [&] {
        FolderListing listing;
        try {
          list(listing, fs::path(folder));
        } catch (const std::exception&) {
          listing.failure = std::current_exception();
        }
        return listing;
      },
      TellListing);
}

void AppendFolders(FolderListing& listing, const fs::directory_iterator& entries) {
  for (const fs::directory_entry& entry : entries) {
    if (entry.is_directory()) Append(listing, entry.path());
  }
}

FolderListing Walk(const std::string& folder, NameTest* wanted, const Way& way, bool deep) {
  return AskListing(Utf8ToWide(folder), way, [&](FolderListing& listing, const fs::path& path) {
    fs::recursive_directory_iterator entry(path);
    for (; entry != fs::recursive_directory_iterator(); ++entry) {
      if (Passes(entry->path(), wanted) && entry->is_regular_file()) Append(listing, entry->path());
      if (!deep || IsReparsePoint(entry->path())) entry.disable_recursion_pending();
    }
  });
}

}  // namespace

FolderListing ListFiles(const std::string& folder, NameTest* wanted) {
  return ListFiles(Utf8ToWide(folder), wanted);
}

FolderListing ListFiles(const std::wstring& folder, NameTest* wanted) {
  return AskListing(folder, kFiles, [&](FolderListing& listing, const fs::path& path) {
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
      if (Passes(entry.path(), wanted) && entry.is_regular_file()) Append(listing, entry.path());
    }
  });
}

FolderListing ListFolders(const std::string& folder) {
  return AskListing(Utf8ToWide(folder), kFolders, [](FolderListing& listing, const fs::path& path) {
    AppendFolders(listing, fs::directory_iterator(path));
  });
}

FolderListing ListFoldersIfOpen(const std::string& folder) {
  return AskListing(Utf8ToWide(folder), kOpenFolders, [](FolderListing& listing, const fs::path& path) {
    std::error_code error;
    const fs::directory_iterator entries(path, fs::directory_options::skip_permission_denied, error);
    if (error) listing.openingError = error.message();
    AppendFolders(listing, entries);
  });
}

FolderListing WalkFiles(const std::string& folder, NameTest* wanted) {
  return Walk(folder, wanted, kWalk, false);
}

FolderListing WalkFilesDeep(const std::string& folder, NameTest* wanted) {
  return Walk(folder, wanted, kDeepWalk, true);
}

void ForEach(const FolderListing& listing, const std::function<void(const FolderEntry&)>& visit) {
  for (const FolderEntry& entry : listing.entries) visit(entry);
  if (listing.failure != nullptr) std::rethrow_exception(listing.failure);
}

}  // namespace tarnwick
