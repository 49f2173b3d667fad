// Edge: the inventory's exports. Contracts stand in the public header.
#include "foundation/conversions.h"
#include "foundation/machine/data_files.h"
#include "inventory/app_cache.h"
#include "inventory/app_export_calls.h"
#include "inventory/app_queries.h"
#include "tarnwick/tarnwick.h"

using namespace tarnwick;

namespace {

constexpr QueryExport kGetAppsJson = {
    "IA_GetAppsJson",
    {"CRITICAL ERROR in IA_GetAppsJson: ", "CRITICAL ERROR: Unknown exception in IA_GetAppsJson."}};
constexpr QueryExport kGetAppsJsonAll = {"IA_GetAppsJsonAll",
                                         {"CRITICAL ERROR: Exception caught in IA_GetAppsJsonAll: ",
                                          "CRITICAL ERROR: Unknown exception caught in IA_GetAppsJsonAll."},
                                         true};
constexpr QueryExport kFindGamesJson = {
    "IA_FindGamesJson",
    {"CRITICAL ERROR in IA_FindGamesJson: ", "CRITICAL ERROR: Unknown exception in IA_FindGamesJson."}};
constexpr QueryExport kFindGamesByFile = {
    "IA_FindGamesByFile",
    {"CRITICAL ERROR in IA_FindGamesByFile: ", "CRITICAL ERROR: Unknown exception in IA_FindGamesByFile."}};

QueryAnswer TextAnswer(const std::wstring& json) { return {AnswerKind::kText, WideToUtf8(json)}; }

QueryAnswer PageAnswer(int32_t page, int32_t pageSize, const wchar_t* filter) {
  const std::optional<std::wstring> json = AppsPageJson(g_appCache, page, pageSize, filter);
  return json ? TextAnswer(*json) : QueryAnswer{AnswerKind::kPageBehindEnd, {}};
}

QueryAnswer GamesAnswer(const char* queryJson) {
  return TextAnswer(FoundGamesJson(g_appCache, ParseGameQueryList(queryJson)));
}

QueryAnswer GamesByFileAnswer(const char* filePath) {
  std::string request;
  const std::wstring path = filePath == nullptr ? std::wstring() : Utf8ToWide(filePath);
  if (path.empty() || !ReadWholeFile(path, request)) return {AnswerKind::kNoRequest, {}};
  return GamesAnswer(request.c_str());
}

}  // namespace

extern "C" {

int32_t IA_RefreshCache(void) { return RunRefresh(RefreshCacheNoLock); }

int32_t IA_GetAppsJson(int32_t page, int32_t pageSize, const wchar_t* filter, char* out, int32_t outSize) {
  return RunQuery(kGetAppsJson, out, outSize, [&] { return PageAnswer(page, pageSize, filter); });
}

int32_t IA_GetAppsJsonAll(const wchar_t* filter, char* out, int32_t outSize) {
  return RunQuery(kGetAppsJsonAll, out, outSize,
                  [&] { return TextAnswer(AppsListJson(g_appCache, filter)); });
}

int32_t IA_FindGamesJson(const char* queryJson, char* out, int32_t outSize) {
  return RunQuery(kFindGamesJson, out, outSize, [&] { return GamesAnswer(queryJson); });
}

int32_t IA_FindGamesByFile(const char* filePath, char* out, int32_t outSize) {
  return RunQuery(kFindGamesByFile, out, outSize, [&] { return GamesByFileAnswer(filePath); });
}

}  // extern "C"
