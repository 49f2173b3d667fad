#pragma once
// The two process-wide critical sections. Order: g_apiLock before g_cacheLock, never the other way round.

#include "foundation/windows_api.h"

namespace tarnwick {

// Recursive, as critical sections are. Set up by static initialisation, so it exists before any export can
// run.
class CriticalSection {
 public:
  CriticalSection() { InitializeCriticalSection(&section_); }
  ~CriticalSection() { DeleteCriticalSection(&section_); }
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

  void Enter() { EnterCriticalSection(&section_); }
  void Leave() { LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_;
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
