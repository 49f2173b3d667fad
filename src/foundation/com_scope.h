#pragma once
// COM for the length of one call on one thread.

namespace tarnwick {

// Enters the multithreaded apartment, or the single-threaded one where the thread already is in that mode.
// Leaves it only if entering succeeded; a refusal is ignored, since the caller's own apartment serves as
// well.
class ComScope {
 public:
  ComScope();
  ~ComScope();
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;

 private:
  bool entered_;
};

}  // namespace tarnwick
