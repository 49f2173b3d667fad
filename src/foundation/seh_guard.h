#pragma once
// The structured-exception guard: runs a function and survives access violations, stack overflows and
// whatever else is raised in it, of any code. That includes the debug output's two codes: a call of that
// output takes its own exception before a guard around it is asked, so what gets here is somebody else's.
// With MSVC it is __try/__except; with g++, which has none, a small assembly frame.

#include <cstdint>
#include <memory>
#include <type_traits>

namespace tarnwick {

// What a language exception counts as, whichever compiler threw it: MSVC's own code.
inline constexpr uint32_t kLanguageExceptionCode = 0xE06D7363;

// Calls function(context) and returns 0, or the code of the structured exception that ended it. `function`
// must not let a language exception out. What a structured exception skips stays skipped: no destructor runs.
uint32_t CallGuarded(void (*function)(void*), void* context);

// Runs `body` under the guard. Returns 0, the structured exception's code, or kLanguageExceptionCode for a
// language exception, whose frames are unwound as usual.
template <class Body>
uint32_t RunGuarded(Body&& body) {
  struct Call {
    std::remove_reference_t<Body>* body;
    bool threw;
  } call{std::addressof(body), false};
  const uint32_t code = CallGuarded(
      [](void* context) {
        Call& inner = *static_cast<Call*>(context);
        try {
          (*inner.body)();
        } catch (...) {
          inner.threw = true;
        }
      },
      &call);
  return call.threw ? kLanguageExceptionCode : code;
}

}  // namespace tarnwick
