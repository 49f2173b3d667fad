#pragma once
// What this process holds, for leak tests, by counters that also work where the documented ones answer 0.

#include <cstddef>
#include <string>

namespace tarnwick::tests {

struct ProcessCounters {
  size_t handles = 0;     // kernel handles
  size_t gdiObjects = 0;  // entries in use of the GDI handle table
  size_t memory = 0;      // committed bytes
  size_t freeTlsSlots = 0;
};

ProcessCounters ReadProcessCounters();

}  // namespace tarnwick::tests
