// Edge: the observer's hook, and the mark of the thread that asks.
#include "foundation/machine/observer.h"

#include "foundation/windows_api.h"

#include <iterator>

namespace tarnwick {
namespace {

constexpr const char* kKindNames[] = {
    "open key",   "read value",  "list subkeys",     "list values",      "attributes",
    "status",     "list folder", "read text file",   "read binary file", "file size",
    "write time", "full path",   "known folder",     "environment",      "expand text",
    "drives",     "drive type",  "version resource", "process",          "icon",
};
static_assert(std::size(kKindNames) == kQuestionKinds);

constexpr const char* kViewNames[] = {"native", "64-bit", "32-bit"};

// Allocated with the first observer, and never freed. A TLS slot of Windows rather than a thread_local: it
// needs no destructor at a thread's end, and so does not keep the module loaded.
std::atomic<DWORD> g_askerSlot = TLS_OUT_OF_INDEXES;

const char* CurrentAsker() {
  const DWORD slot = g_askerSlot.load(std::memory_order_acquire);
  const void* const asker = slot == TLS_OUT_OF_INDEXES ? nullptr : TlsGetValue(slot);
  return asker == nullptr ? "" : static_cast<const char*>(asker);
}

}  // namespace

const char* NameOf(QuestionKind kind) { return kKindNames[static_cast<int>(kind)]; }

const char* NameOf(RegistryView view) { return kViewNames[static_cast<int>(view)]; }

void SetObserver(const Observer* observer) {
  if (observer != nullptr && g_askerSlot.load() == TLS_OUT_OF_INDEXES) g_askerSlot = TlsAlloc();
  machine::g_observer.store(observer, std::memory_order_release);
}

AskingAs::AskingAs(const char* asker) : before_(nullptr) {
  const DWORD slot = g_askerSlot.load(std::memory_order_acquire);
  if (slot == TLS_OUT_OF_INDEXES) return;
  before_ = TlsGetValue(slot);
  TlsSetValue(slot, const_cast<char*>(asker));
}

AskingAs::~AskingAs() {
  const DWORD slot = g_askerSlot.load(std::memory_order_acquire);
  if (slot != TLS_OUT_OF_INDEXES) TlsSetValue(slot, before_);
}

namespace machine {

std::atomic<const Observer*> g_observer = nullptr;

KeptLastError::KeptLastError() : error_(GetLastError()) {}

KeptLastError::~KeptLastError() { SetLastError(error_); }

void SetAccessDenied() { SetLastError(ERROR_ACCESS_DENIED); }

bool Refuses(const Observer& observer, Question& question) {
  question.asker = CurrentAsker();
  if (!observer.refuses || !observer.refuses(question)) return false;
  Hear(observer, question, {false, "refused"});
  SetAccessDenied();
  return true;
}

void Hear(const Observer& observer, const Question& question, const Answer& answer) {
  if (observer.heard) observer.heard(question, answer);
}

Answer TellText(const std::string& text) { return {!text.empty(), text}; }

}  // namespace machine
}  // namespace tarnwick
