#pragma once
// The watch on the foreground process. The exports are thin shells over these functions.
//
// One thread polls and calls the host's callback; start and stop come from one host thread at a time, and
// neither may be called with the loader's lock held. While a watch has not been stopped the library can't be
// unloaded.

#include "foundation/windows_api.h"
#include "tarnwick/tarnwick.h"

#include <cstdint>
#include <string>
#include <thread>

namespace tarnwick {

// What the watch asks of Windows, as data, so that a test can play the desktop.
struct FocusCalls {
  uint32_t (*foregroundProcess)();                // 0: no foreground window
  std::wstring (*imagePath)(uint32_t processId);  // empty: the process can't be opened or asked
  void (*sleep)(int32_t milliseconds);
  std::thread (*startThread)(int32_t interval, const FocusCalls& calls);  // on PollForeground
};

extern const FocusCalls kWindowsFocusCalls;

// Called on the watch thread, with texts that live as long as the call; null silences the watch. Any time,
// any thread.
void SetFocusCallback(TarnwickFocusCallback callback);

// Starts the watch, unless one runs: then the interval is ignored. Below 50 milliseconds the interval is 200.
// After a stop from within the callback the old thread is awaited first. `calls` must outlive the thread.
// Failures are logged; the watch then counts as running until it is stopped.
void StartWatch(int32_t interval, const FocusCalls& calls);

// Ends the watch and waits for its thread, which takes up to one interval and the running callback. From
// within the callback it only gives the order, and logs that it can't wait; the next stop from another thread
// does.
void StopWatch();

// The watch thread's loop: reports the foreground process whenever it is another than before, until the watch
// is stopped.
void PollForeground(int32_t interval, const FocusCalls& calls);

}  // namespace tarnwick
