// Edge: queries over the cached applications.
#include "inventory/app_queries.h"

#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/known_folders.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/paths.h"
#include "foundation/text.h"
#include "inventory/app_list_json.h"
#include "inventory/icon_uris.h"

#include <algorithm>
#include <cwctype>
#include <exception>

namespace tarnwick {
namespace {

constexpr uint32_t kCommandUnits = 260;
constexpr size_t kUnitsPerObject = 4096;  // icons make up most of the text

struct AppWithExecutable {
  AppRecord* record;
  std::wstring executable;
};

std::wstring Lowered(std::wstring text) {
  for (wchar_t& unit : text) unit = static_cast<wchar_t>(std::towlower(unit));
  return text;
}

bool NamesExecutable(const std::wstring& displayIcon) { return ContainsNoCase(displayIcon, {L".exe"}); }

bool NamesUninstaller(const std::wstring& path) {
  return ContainsNoCase(FileNameOf(path), {L"uninstall", L"unins", L"\u5378\u8f7d"});
}

std::vector<AppWithExecutable> AppsWithExecutable(const std::vector<AppRecord*>& records) {
  std::vector<AppWithExecutable> apps;
  for (AppRecord* record : records) {
    std::wstring executable = PageExecutable(*record);
    if (!executable.empty()) apps.push_back({record, std::move(executable)});
  }
  return apps;
}

void AppendListed(std::wstring& json, AppRecord& record, IconLoader* loadIcon) {
  ResolveInstallLocation(record);
  const std::wstring executable = ListExecutable(record);
  if (executable.empty()) return;
  loadIcon(record);
  AppendAppObject(json, {record, record.DisplayName, executable, true});
}

void AppendListedCaught(std::wstring& json, AppRecord& record, IconLoader* loadIcon) {
  const size_t length = json.size();
  try {
    AppendListed(json, record, loadIcon);
  } catch (const std::exception& error) {
    json.resize(length);
    LogLine("Error processing app: " + WideToUtf8(record.DisplayName) + " - " + error.what());
  } catch (...) {
    json.resize(length);
    LogLine("Unknown error processing app: " + WideToUtf8(record.DisplayName));
  }
}

// The first record that answers the query, or null.
AppRecord* FindApp(AppRecords& records, const GameQuery& query, std::wstring& foundPath) {
  const auto found = std::find_if(records.begin(), records.end(), [&](const AppRecord& record) {
    return MatchAppForQuery(query, record, foundPath);
  });
  return found == records.end() ? nullptr : &*found;
}

// The existing file that the record's icon or uninstaller names; empty if there is none.
std::wstring KnownFileOf(const AppRecord& record) {
  if (!record.DisplayIcon.empty()) {
    // Kept: any comma counts, also one in a folder's name (docs/decisions/icon-lookups.md).
    const std::wstring file =
        ExtractPathFromCommand(record.DisplayIcon.substr(0, record.DisplayIcon.rfind(L',')));
    if (ShellPathExists(file)) return file;
  }
  const std::wstring uninstaller = ExtractPathFromCommand(record.UninstallString);
  return ShellPathExists(uninstaller) ? uninstaller : std::wstring();
}

}  // namespace

std::vector<AppRecord*> FilterApps(AppRecords& records, const wchar_t* filter) {
  const std::wstring wanted = filter == nullptr ? std::wstring() : Lowered(filter);
  std::vector<AppRecord*> passed;
  for (AppRecord& record : records) {
    const bool passes = wanted.empty() || Lowered(record.DisplayName).find(wanted) != std::wstring::npos ||
                        Lowered(record.Publisher).find(wanted) != std::wstring::npos;
    if (passes) passed.push_back(&record);
  }
  return passed;
}

std::wstring PageExecutable(const AppRecord& record) {
  if (!NamesExecutable(record.DisplayIcon)) return {};
  std::wstring executable = record.DisplayIcon;
  if (executable.ends_with(L",0")) executable.resize(executable.size() - 2);
  // Kept: quotes and other indices stay here; only the full list takes them off
  // (docs/decisions/list-icon-index.md).
  return NamesUninstaller(executable) ? std::wstring() : executable;
}

std::wstring ListExecutable(const AppRecord& record) {
  constexpr size_t kLongestIndex = 4;  // such as "-101"
  if (!NamesExecutable(record.DisplayIcon)) return {};
  std::wstring executable = UnquotedHead(record.DisplayIcon);
  const size_t comma = executable.rfind(L',');
  if (comma != std::wstring::npos && executable.size() - comma - 1 <= kLongestIndex) executable.resize(comma);
  return NamesUninstaller(executable) ? std::wstring() : executable;
}

std::optional<std::wstring> AppsPageJson(AppRecords& records, int32_t page, int32_t pageSize,
                                         const wchar_t* filter) {
  constexpr int32_t kUsualPageSize = 20;
  const std::vector<AppWithExecutable> apps = AppsWithExecutable(FilterApps(records, filter));
  const auto size = static_cast<uint64_t>(pageSize < 1 ? kUsualPageSize : pageSize);
  const uint64_t start = (static_cast<uint64_t>(std::max(page, 1)) - 1) * size;
  if (start >= apps.size()) return std::nullopt;
  const uint64_t end = std::min<uint64_t>(start + size, apps.size());
  std::wstring json;
  // No more than will be written: the page size is the host's, and may be enormous.
  json.reserve(static_cast<size_t>(end - start) * kUnitsPerObject);
  json += L'[';
  for (size_t i = static_cast<size_t>(start); i < end; ++i) {
    AppRecord& record = *apps[i].record;
    ResolveInstallLocation(record);
    LoadAppIconLazy(record);
    AppendAppObject(json, {record, record.DisplayName, apps[i].executable});
  }
  json += L']';
  return json;
}

std::wstring AppsListJson(AppRecords& records, const wchar_t* filter, IconLoader* loadIcon) {
  const std::vector<AppRecord*> passed = FilterApps(records, filter);
  std::wstring json;
  json.reserve(passed.size() * kUnitsPerObject);
  json += L'[';
  for (AppRecord* record : passed) AppendListedCaught(json, *record, loadIcon);
  json += L']';
  return json;
}

std::wstring AppsListJson(AppRecords& records, const wchar_t* filter) {
  return AppsListJson(records, filter, LoadAppIconLazy);
}

std::wstring FoundGamesJson(AppRecords& records, const std::vector<GameQuery>& queries) {
  for (AppRecord& record : records) ResolveInstallLocation(record);
  std::wstring json = L"[";
  for (const GameQuery& query : queries) {
    std::wstring foundPath;
    AppRecord* record = FindApp(records, query, foundPath);
    if (record == nullptr || foundPath.empty()) continue;
    LoadAppIconLazy(*record);
    AppendAppObject(json, {*record, query.name.empty() ? record->DisplayName : query.name, foundPath});
  }
  json += L']';
  return json;
}

std::vector<GameQuery> ParseGameQueryList(const char* text) {
  if (text == nullptr) return {};
  return ParseGameQueryList(Utf8ToWide(text));
}

bool MatchAppForQuery(const GameQuery& query, const AppRecord& record, std::wstring& foundPath) {
  foundPath.clear();
  const std::wstring folder = UnquotedHead(record.InstallLocation);
  if (!ShellFolderExists(folder)) return false;
  std::vector<std::wstring> candidates;
  if (!query.exePath.empty())
    candidates.push_back(JoinWidePath(JoinWidePath(folder, query.exePath), query.exeName));
  candidates.push_back(JoinWidePath(folder, query.exeName));
  const auto found = std::find_if(candidates.begin(), candidates.end(), ShellPathExists);
  if (found == candidates.end()) return false;
  foundPath = *found;
  return true;
}

void ResolveInstallLocation(AppRecord& record) {
  const std::wstring folder = UnquotedHead(record.InstallLocation);
  if (!folder.empty() && ShellFolderExists(folder)) {
    record.InstallLocation = folder;
    return;
  }
  const std::wstring file = KnownFileOf(record);
  if (!file.empty()) record.InstallLocation = FolderOf(file, kCommandUnits);
}

std::wstring ExtractPathFromCommand(const std::wstring& text) {
  if (text.empty()) return {};
  const std::wstring command = ExpandVariables(text, kCommandUnits);
  if (command.starts_with(L'"')) return command.substr(1, command.find(L'"', 1) - 1);
  if (ShellPathExists(command)) return command;
  const std::wstring program = command.substr(0, command.find(L' '));
  return ShellPathExists(program) ? program : command;
}

}  // namespace tarnwick
