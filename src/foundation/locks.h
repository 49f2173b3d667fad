#pragma once
// The two process-wide critical sections. Order: g_apiLock before g_cacheLock, never the other way round.

namespace tarnwick {

// Recursive, as critical sections are. Set up by static initialisation, so it exists before any export can
// run.
class CriticalSection {
 public:
  CriticalSection();
  ~CriticalSection();
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

  void Enter();
  void Leave();

 private:
  // Room for Windows' own, which no user of a lock need see.
  void* section_[sizeof(void*) == 8 ? 5 : 6];
};

// Holds a critical section to the end of the scope.
class CriticalSectionScope {
 public:
  explicit CriticalSectionScope(CriticalSection& section) : section_(section) { section_.Enter(); }
  ~CriticalSectionScope() { section_.Leave(); }
  CriticalSectionScope(const CriticalSectionScope&) = delete;
  CriticalSectionScope& operator=(const CriticalSectionScope&) = delete;

 private:
  CriticalSection& section_;
};

extern CriticalSection g_apiLock;    // serialises scans, cache refreshes and the full application list
extern CriticalSection g_cacheLock;  // guards the application cache and everything in its records

}  // namespace tarnwick
