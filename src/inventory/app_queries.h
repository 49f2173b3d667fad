#pragma once
// What the inventory exports answer from the cache. The caller of everything that takes records holds
// g_cacheLock: resolved folders and icons are written back into them.

#include "inventory/app_record.h"
#include "inventory/game_query_reader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

using AppRecords = std::vector<AppRecord>;
using IconLoader = void(AppRecord& record);

// Those records whose name or publisher contains the filter, both in lower case by `towlower`. Null and empty
// filters pass all.
std::vector<AppRecord*> FilterApps(AppRecords& records, const wchar_t* filter);

// What the paged and the full list show as an application's executable, from its DisplayIcon; empty if that
// holds no ".exe", or names an uninstaller. They differ: the page takes off ",0" alone and leaves quotes, the
// full list takes off quotes and any short index.
std::wstring PageExecutable(const AppRecord& record);
std::wstring ListExecutable(const AppRecord& record);

// A page (from 1; lower counts as 1) of pageSize (below 1: 20) of the filtered records that have an
// executable, as a JSON array; nothing if the page lies behind the end.
std::optional<std::wstring> AppsPageJson(AppRecords& records, int32_t page, int32_t pageSize,
                                         const wchar_t* filter);

// All filtered records that have an executable. A record that fails is logged and left out.
std::wstring AppsListJson(AppRecords& records, const wchar_t* filter);
std::wstring AppsListJson(AppRecords& records, const wchar_t* filter, IconLoader* loadIcon);

// For each query that has one, the first record whose install folder holds the query's executable.
std::wstring FoundGamesJson(AppRecords& records, const std::vector<GameQuery>& queries);

// As the reader's, for UTF-8 text; null gives an empty list.
std::vector<GameQuery> ParseGameQueryList(const char* text);

// True if the query's executable lies in the record's install folder, first in the subfolder exePath, then in
// the folder itself. foundPath is then the executable, otherwise empty.
bool MatchAppForQuery(const GameQuery& query, const AppRecord& record, std::wstring& foundPath);

// Gives InstallLocation a usable folder: its own without quotes if that exists, otherwise the icon's file's,
// otherwise the uninstaller's. A record with none of them keeps what it had.
void ResolveInstallLocation(AppRecord& record);

// The program of a command line, with variables expanded: what is quoted, or the whole text if that exists,
// or what stands before the first blank if that exists, or the whole text.
std::wstring ExtractPathFromCommand(const std::wstring& text);

}  // namespace tarnwick
