// Edge: where the icon of an application comes from.
#include "inventory/icons.h"

#include "foundation/com_scope.h"
#include "foundation/conversions.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/observer.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "inventory/icon_calls.h"
#include "inventory/png.h"

#include <shellapi.h>
#include <shlwapi.h>
#include <cstdint>
#include <cwchar>
#include <string_view>
#include <vector>

namespace tarnwick {
namespace {

constexpr uint32_t kCommandUnits = 260;
constexpr uint32_t kReferenceUnits = 4096;
constexpr int kFolderUnits = 1040;
constexpr double kNoCandidate = -1.0;

// The running best candidate of a folder search.
struct Best {
  std::wstring path;
  double score = kNoCandidate;
};

// A folder as the search sees it.
struct SearchedEntry {
  std::wstring name;
  uint64_t bytes = 0;
  bool isFolder = false;
};

struct SearchedFolder {
  std::vector<SearchedEntry> entries = {};
  DWORD error = ERROR_SUCCESS;  // why it can't be listed
};

bool IsInstallerName(const std::wstring& fileName) {
  return ContainsNoCase(fileName, {L"unins", L"uninstall", L"setup", L"install"});
}

bool IsSkippedFolder(const std::wstring& name) {
  return ContainsNoCase(
      name, {L"unins", L"uninstall", L"setup", L"install", L"update", L"patch", L"cleanup", L"repair"});
}

SearchedEntry EntryOf(const WIN32_FIND_DATAW& found) {
  return {found.cFileName, static_cast<uint64_t>(found.nFileSizeHigh) << 32 | found.nFileSizeLow,
          (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0};
}

SearchedFolder ListEntries(const std::wstring& folder) {
  const std::wstring pattern = (folder.back() == L'\\' ? folder : folder + L'\\') + L'*';
  WIN32_FIND_DATAW found;
  const FindHandle find(FindFirstFileW(pattern.c_str(), &found));
  if (!find) return {{}, GetLastError()};
  SearchedFolder listing;
  do {
    const std::wstring_view name = found.cFileName;
    if (name != L"." && name != L"..") listing.entries.push_back(EntryOf(found));
  } while (FindNextFileW(find.Get(), &found));
  return listing;
}

Answer TellEntries(const SearchedFolder& listing) {
  if (listing.error != ERROR_SUCCESS) return {false, "error " + std::to_string(listing.error)};
  Answer answer{true, {}};
  for (const SearchedEntry& entry : listing.entries) {
    answer.text += WideToUtf8(entry.name) + '\t';
    answer.text += (entry.isFolder ? "folder" : std::to_string(entry.bytes)) + '\n';
  }
  return answer;
}

SearchedFolder AskEntries(const std::wstring& folder) {
  return machine::AskMachine(
      [&] { return Question{QuestionKind::kListFolder, WideToUtf8(folder), kIconSearch, {}, {}}; },
      [] { return SearchedFolder{{}, ERROR_ACCESS_DENIED}; }, [&] { return ListEntries(folder); },
      TellEntries);
}

// Junctions are followed: the depth alone keeps a loop of them finite.
void SearchFolder(const std::wstring& folder, int depth, Best& best) {
  constexpr int kDepthLimit = 3;
  if (depth >= kDepthLimit) return;
  for (const SearchedEntry& entry : AskEntries(folder).entries) {
    if (!entry.isFolder) {
      const double score = IconScore(entry.name, entry.bytes);
      if (score > best.score) best = {JoinWidePath(folder, entry.name), score};
    } else if (!IsSkippedFolder(entry.name)) {
      SearchFolder(JoinWidePath(folder, entry.name), depth + 1, best);
    }
  }
}

std::vector<std::wstring> WeGameCandidates(const std::wstring& folder) {
  constexpr wchar_t kLauncherIcon[] = L"WeGameLauncher\\game\\game.ico";
  std::vector<std::wstring> candidates = {JoinWidePath(folder, kLauncherIcon)};
  if (ContainsNoCase(folder, {L"WeGameLauncher"}))
    candidates.push_back(JoinWidePath(folder, L"game\\game.ico"));
  std::vector<wchar_t> parent(kFolderUnits, L'\0');
  lstrcpynW(parent.data(), folder.c_str(), kFolderUnits);
  if (PathRemoveFileSpecW(parent.data())) candidates.push_back(JoinWidePath(parent.data(), kLauncherIcon));
  return candidates;
}

// The uninstaller's folder; empty if the command names no existing file.
std::wstring FolderOfUninstaller(const std::wstring& uninstallString) {
  const std::wstring command = ExpandVariables(uninstallString, kCommandUnits);
  std::wstring program = UnquotedHead(command);
  if (program == command) program = command.substr(0, command.find(L' '));
  if (!ShellPathExists(program)) return {};
  return FolderOf(program, static_cast<int>(program.size()) + 1);
}

Icon AskStockApplicationIcon() {
  SHSTOCKICONINFO info = {};
#if defined(_WIN64)
  static_assert(sizeof info == 544);
#endif
  info.cbSize = sizeof info;
  if (FAILED(SHGetStockIconInfo(SIID_APPLICATION, SHGSI_ICON, &info))) return Icon();
  return Icon(info.hIcon);
}

std::string UriOrStock(Icon icon) {
  if (!icon) icon = LoadStockApplicationIcon();
  return IconDataUri(icon.Get());
}

}  // namespace

IconReference ParseIconReference(const std::wstring& text) {
  IconReference reference{text, 0};
  const size_t closing = text.size() >= 2 && text.front() == L'"' ? text.find(L'"', 1) : std::wstring::npos;
  if (closing != std::wstring::npos) {
    reference.path = text.substr(1, closing - 1);
    if (closing + 1 < text.size()) {
      if (text[closing + 1] == L',') reference.index = _wtoi(text.c_str() + closing + 2);
      // Kept: variables are expanded only where the quote closes the text (docs/decisions/icon-lookups.md).
      return reference;
    }
  } else if (const size_t comma = text.rfind(L','); comma != std::wstring::npos) {
    reference = {text.substr(0, comma), _wtoi(text.c_str() + comma + 1)};
  }
  if (!reference.path.empty()) reference.path = ExpandVariables(reference.path, kReferenceUnits);
  return reference;
}

std::string AppIconUri(const AppRecord& record) { return UriOrStock(ResolveAppIcon(record)); }

std::string FileIconUri(const std::wstring& path) { return UriOrStock(LoadIconFromFile(path, 0)); }

void LoadAppIconLazy(AppRecord& record) {
  if (record.IconLoaded) return;
  const ComScope com;
  const std::string uri = AppIconUri(record);
  record.IconDataUri.assign(uri.begin(), uri.end());
  record.IconLoaded = true;
}

Icon ResolveAppIcon(const AppRecord& record) {
  const IconReference reference = ParseIconReference(record.DisplayIcon);
  if (!reference.path.empty() && !IsInstallerName(FileNameOf(reference.path))) {
    if (Icon icon = LoadIconFromFile(reference.path, reference.index)) return icon;
  }
  std::wstring folder = record.InstallLocation;
  if (folder.empty() && !record.UninstallString.empty()) folder = FolderOfUninstaller(record.UninstallString);
  return folder.empty() ? Icon() : TryLoadIconFromInstallLocation(folder);
}

Icon TryLoadIconFromInstallLocation(const std::wstring& folder) {
  if (folder.empty()) return Icon();
  if (Icon icon = TryLoadWeGameIcon(folder)) return icon;
  Best best;
  SearchFolder(folder, 0, best);
  return best.path.empty() ? Icon() : LoadIconFromFile(best.path, 0);
}

double IconScore(const std::wstring& fileName, uint64_t bytes) {
  constexpr double kMebibytesPerByte = 9.5367431640625e-07;
  constexpr double kNameBonus = 50.0;
  // Kept: the skip words are for folders, so an installer's own executable takes part like any other
  // (docs/decisions/icon-lookups.md).
  if (_wcsicmp(PathFindExtensionW(fileName.c_str()), L".exe") != 0) return kNoCandidate;
  const double score = static_cast<double>(bytes) * kMebibytesPerByte;
  return ContainsNoCase(fileName, {L"client", L"main", L"app"}) ? score + kNameBonus : score;
}

Icon TryLoadWeGameIcon(const std::wstring& folder) {
  if (folder.empty()) return Icon();
  for (const std::wstring& candidate : WeGameCandidates(folder)) {
    if (Icon icon = LoadIcoFile(candidate)) return icon;
  }
  return Icon();
}

std::wstring MendSecondColon(const std::wstring& path) {
  if (ShellPathExists(path)) return path;
  const size_t first = path.find(L':');
  const size_t second = first == std::wstring::npos ? first : path.find(L':', first + 1);
  if (second == std::wstring::npos) return path;
  for (const wchar_t substitute : {L'\uFF1A', L'_'}) {
    std::wstring mended = path;
    mended[second] = substitute;
    if (ShellPathExists(mended)) return mended;
  }
  return path;
}

Icon LoadIconFromFile(const std::wstring& path, int index, const IconCalls& calls) {
  if (path.empty()) return Icon();
  const std::wstring file = MendSecondColon(path);
  // Kept: anywhere in the path, so an executable in a folder named "x.icons" counts as an .ico file, too
  // (docs/decisions/icon-lookups.md).
  if (ContainsNoCase(file, {L".ico"})) return LoadIcoFile(file, calls);
  for (const int size : {256, 128, 48}) {
    // Kept: a negative index becomes 0 here alone (docs/decisions/icon-lookups.md).
    if (Icon icon = calls.privateExtract(file, index < 0 ? 0 : index, size)) return icon;
  }
  if (Icon icon = calls.systemImageList(file)) return icon;
  if (Icon icon = calls.extractIconEx(file, index)) return icon;
  return calls.shellIcon(file);
}

Icon LoadIcoFile(const std::wstring& path, const IconCalls& calls) {
  if (!ShellPathExists(path)) return Icon();
  for (const int size : {256, 0, 32}) {
    if (Icon icon = calls.loadImage(path, size)) return icon;
  }
  return calls.shellIcon(path);
}

Icon LoadIconFromFile(const std::wstring& path, int32_t index) {
  return LoadIconFromFile(path, index, kWindowsIconCalls);
}

Icon LoadIcoFile(const std::wstring& path) { return LoadIcoFile(path, kWindowsIconCalls); }

Icon LoadStockApplicationIcon() {
  return machine::AskMachine(
      [] { return Question{QuestionKind::kIcon, kGenericApplication, "SHGetStockIconInfo", {}, {}}; },
      [] { return Icon(); }, AskStockApplicationIcon, TellIcon);
}

}  // namespace tarnwick
