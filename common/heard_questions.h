#pragma once
// An observer of the machine room that keeps what it hears. For programs that link the library's objects.

#include "foundation/machine/observer.h"
#include "foundation/windows_api.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tarnwick::common {

struct Heard {
  Question question;
  Answer answer;
  uint32_t thread = 0;
};

// Listens from construction to destruction, on all threads. One at a time may be alive.
class HeardQuestions {
 public:
  // `refuses` is called by one thread at a time.
  explicit HeardQuestions(const std::function<bool(const Question&)>& refuses = nullptr) {
    if (refuses) {
      observer_.refuses = [this, refuses](const Question& question) {
        const std::lock_guard lock(mutex_);
        return refuses(question);
      };
    }
    observer_.heard = [this](const Question& question, const Answer& answer) {
      const std::lock_guard lock(mutex_);
      heard_.push_back({question, answer, GetCurrentThreadId()});
    };
    SetObserver(&observer_);
  }
  ~HeardQuestions() { SetObserver(nullptr); }
  HeardQuestions(const HeardQuestions&) = delete;
  HeardQuestions& operator=(const HeardQuestions&) = delete;

  // In the order of the answers.
  std::vector<Heard> All() const {
    const std::lock_guard lock(mutex_);
    return heard_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<Heard> heard_;
  Observer observer_;
};

}  // namespace tarnwick::common
