#pragma once
// What stands around each inventory export: the guards, the locks and COM, and the way of the answer into the
// caller's buffer. The locks and COM are let go whatever ends a call, a structured exception included: a host
// thread that died with a lock held would hang all the others.

#include "foundation/com_scope.h"
#include "foundation/export_guard.h"
#include "foundation/locks.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace tarnwick {

inline constexpr char kEmptyList[] = "[]";

// What a call has entered and leaves at its end, in reverse order.
struct CallScope {
  std::optional<CriticalSectionScope> apiLock;
  std::optional<ComScope> com;
  std::optional<CriticalSectionScope> cacheLock;
};

struct QueryExport {
  const char* name;
  ExportMessages messages;
  bool takesApiLock = false;
};

enum class AnswerKind {
  kText,           // written as far as it fits
  kFailure,        // "[]", by the rule for failures
  kPageBehindEnd,  // "[]" if that fits whole, otherwise nothing; the result is 2
  kNoRequest,      // "[]" and 2 if that fits whole, otherwise nothing and 0
};

struct QueryAnswer {
  AnswerKind kind = AnswerKind::kFailure;
  std::string text;  // UTF-8, for kText
};

// Logs the start line and fills an empty cache. On return the call holds what the query needs.
void OpenQuery(const QueryExport& query, CallScope& call);

// Writes the answer and returns the export's result.
int32_t DeliverAnswer(const QueryAnswer& answer, char* out, int32_t outSize);

// Runs the opening and `body`, which gives a QueryAnswer, under both guards, then writes the answer with no
// lock held: the caller's buffer may be anything.
template <class Body>
int32_t RunQuery(const QueryExport& query, char* out, int32_t outSize, Body&& body) {
  QueryAnswer answer;
  bool answered = false;
  {
    CallScope call;
    RunExportGuarded(query.name, [&] {
      answered = RunCatching(query.messages, [&] {
        OpenQuery(query, call);
        answer = body();
      });
    });
  }
  if (!answered) answer = QueryAnswer();
  int32_t result = 0;
  if (RunExportGuarded(query.name, [&] { result = DeliverAnswer(answer, out, outSize); })) return result;
  return WriteEmptyResultGuarded(kEmptyList, out, outSize);  // the buffer itself is bad
}

// The implementation of IA_RefreshCache: enters both locks, rebuilds the cache by `refresh` and returns the
// number of applications, or 0 after a failure.
int32_t RunRefresh(void (*refresh)());

}  // namespace tarnwick
