#pragma once
// Windows of this process, for tests of the foreground.

#include "foundation/windows_api.h"

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace tarnwick::tests {

// Waits until the condition holds, and no longer than its patience. True if it does.
template <class Condition>
bool Eventually(Condition condition, std::chrono::milliseconds patience = std::chrono::seconds(20)) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (std::chrono::steady_clock::now() < end) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

// A window of this process, with a thread that serves it.
class OwnWindow {
 public:
  OwnWindow() {
    thread_ = std::thread([this] {
      window_ = CreateWindowExW(0, L"STATIC", L"Tarnwick own", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 200,
                                100, nullptr, nullptr, nullptr, nullptr);
      for (MSG message; GetMessageW(&message, nullptr, 0, 0) > 0;) {
        if (message.message == WM_APP) SetForegroundWindow(window_);
        if (message.message == WM_APP + 1) break;
        DispatchMessageW(&message);
      }
      DestroyWindow(window_);
    });
    if (!Eventually([&] { return window_ != nullptr; })) throw std::runtime_error("no window");
  }
  ~OwnWindow() {
    PostMessageW(window_, WM_APP + 1, 0, 0);
    thread_.join();
  }
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;

  HWND Window() const { return window_; }

 private:
  std::atomic<HWND> window_ = nullptr;
  std::thread thread_;
};

// True when the window is in the foreground and stays there: a window that has just appeared takes it for
// itself, a little late.
inline bool BringForward(HWND window) {
  return Eventually([&] {
    if (GetForegroundWindow() != window) SetForegroundWindow(window);
    for (int i = 0; i < 15; ++i) {
      if (GetForegroundWindow() != window) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
  });
}

}  // namespace tarnwick::tests
