#pragma once
// The one hook on everything that the library asks of the machine: an observer hears each question with its
// answer, and may refuse it. The library itself never sets one; programs and tests that link its objects do.
//
// The functions of this folder put their questions through AskMachine. While nobody listens that is one
// atomic load and one branch: no text is made, nothing is allocated.

#include <atomic>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace tarnwick {

enum class QuestionKind {
  kOpenKey,
  kReadValue,
  kListSubkeys,
  kListValues,
  kAttributes,
  kStatus,
  kListFolder,
  kReadTextFile,
  kReadBinaryFile,
  kFileSize,
  kWriteTime,
  kFullPath,
  kKnownFolder,
  kEnvironment,
  kExpandText,
  kDrives,
  kDriveType,
  kVersionResource,
  kProcess,
  kIcon,
};
inline constexpr int kQuestionKinds = static_cast<int>(QuestionKind::kIcon) + 1;

// Which of the registry's two views a key is opened in; native is the process's own.
enum class RegistryView { kNative, k64, k32 };

// Such as "open key" and "64-bit".
const char* NameOf(QuestionKind kind);
const char* NameOf(RegistryView view);

// All texts are UTF-8, but for paths and names that go to a narrow call: those stand as their bytes are.
struct Question {
  QuestionKind kind = QuestionKind::kOpenKey;
  std::string subject;  // the key's text, the path, the folder's or the variable's name
  std::string detail;   // the value's name, or how the question is put where there is more than one way
  RegistryView view = RegistryView::kNative;
  std::string asker;  // the strategy, empty outside of one
};

struct Answer {
  bool given = false;  // false: the machine refused, failed, or has no such thing
  std::string text;  // what came: a text, a file's bytes, a list with one entry on each line; or why nothing
};

// Both functions may be empty, and both are called on whatever threads ask, several at a time. What `heard`
// throws passes to whoever asked the question.
struct Observer {
  // Called before the machine is asked. True: it isn't asked, and the asker gets what Windows answers where
  // access is denied.
  std::function<bool(const Question&)> refuses;
  // Called after each question, refused ones included.
  std::function<void(const Question&, const Answer&)> heard;
};

// Null ends the observation. The observer must outlive it, and it changes only while no question is asked.
void SetObserver(const Observer* observer);

// Marks this thread's questions as those of a strategy, to the end of the scope. The text must live as long.
// Does nothing until an observer was set: the mark needs a thread-local slot, of which a process has few, and
// a library that is loaded and unloaded again and again must not use them up.
class AskingAs {
 public:
  explicit AskingAs(const char* asker);
  ~AskingAs();
  AskingAs(const AskingAs&) = delete;
  AskingAs& operator=(const AskingAs&) = delete;

 private:
  void* before_;
};

namespace machine {

extern std::atomic<const Observer*> g_observer;

// Restores the thread's last error after the observer has run: askers read it after their question.
class KeptLastError {
 public:
  KeptLastError();
  ~KeptLastError();
  KeptLastError(const KeptLastError&) = delete;
  KeptLastError& operator=(const KeptLastError&) = delete;

 private:
  unsigned long error_;
};

void SetAccessDenied();  // the last error of a refused question
bool Refuses(const Observer& observer, Question& question);
void Hear(const Observer& observer, const Question& question, const Answer& answer);

template <class Ask>
auto OrHearFailure(const Observer& observer, const Question& question, Ask&& ask) {
  try {
    return ask();
  } catch (const std::exception& failure) {
    Hear(observer, question, {false, failure.what()});
    throw;
  }
}

template <class Describe, class Refused, class Ask, class Tell>
auto AskObserved(const Observer& observer, Describe&& describe, Refused&& refused, Ask&& ask, Tell&& tell)
    -> decltype(ask()) {
  Question question = describe();
  if (Refuses(observer, question)) return refused();
  auto answer = OrHearFailure(observer, question, ask);
  const KeptLastError kept;
  Hear(observer, question, tell(answer));
  return answer;
}

// Puts one question and returns the machine's answer, as `ask` gives it. `describe` makes the Question,
// `refused` what is returned (or thrown) in the machine's place, `tell` the Answer: they run only while
// somebody listens.
template <class Describe, class Refused, class Ask, class Tell>
auto AskMachine(Describe&& describe, Refused&& refused, Ask&& ask, Tell&& tell) -> decltype(ask()) {
  const Observer* const observer = g_observer.load(std::memory_order_acquire);
  if (observer == nullptr) return ask();
  return AskObserved(*observer, describe, refused, ask, tell);
}

// The Answer to a question whose result is one text; an empty text counts as none given.
Answer TellText(const std::string& text);

}  // namespace machine
}  // namespace tarnwick
