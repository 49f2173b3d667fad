// Edge: the common frame of the inventory exports.
#include "inventory/app_export_calls.h"

#include "foundation/log.h"
#include "foundation/result_buffer.h"
#include "inventory/app_cache.h"

namespace tarnwick {
namespace {

bool HoldsEmptyList(const char* out, int32_t outSize) {
  return out != nullptr && outSize >= static_cast<int32_t>(sizeof kEmptyList);
}

}  // namespace

void OpenQuery(const QueryExport& query, CallScope& call) {
  if (query.takesApiLock) call.apiLock.emplace(g_apiLock);
  call.com.emplace();
  LogLine(std::string(query.name) + " START");
  call.cacheLock.emplace(g_cacheLock);
  if (g_appCache.empty()) RefreshCacheNoLock();
}

int32_t DeliverAnswer(const QueryAnswer& answer, char* out, int32_t outSize) {
  if (answer.kind == AnswerKind::kText) return WriteResult(answer.text, out, outSize);
  if (answer.kind != AnswerKind::kFailure && !HoldsEmptyList(out, outSize)) {
    return answer.kind == AnswerKind::kNoRequest ? 0 : kEmptyResultLength;
  }
  return WriteEmptyResult(kEmptyList, out, outSize);
}

int32_t RunRefresh(void (*refresh)()) {
  static constexpr ExportMessages kMessages = {"CRITICAL ERROR in IA_RefreshCache: ",
                                               "CRITICAL ERROR: Unknown exception in IA_RefreshCache."};
  CallScope call;
  int32_t count = 0;
  RunExportGuarded("IA_RefreshCache", [&] {
    RunCatching(kMessages, [&] {
      call.apiLock.emplace(g_apiLock);
      call.com.emplace();
      LogLine("IA_RefreshCache START");
      call.cacheLock.emplace(g_cacheLock);
      refresh();
      LogLine("IA_RefreshCache SUCCESS");
      count = static_cast<int32_t>(g_appCache.size());
    });
  });
  return count;
}

}  // namespace tarnwick
