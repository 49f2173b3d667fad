#pragma once
// A capture of this machine: what the library asked it during a scan and a full application list, and what
// stands at those places, without what is private.

#include "host/capture/machine_copy.h"
#include "host/explain/observed_scan.h"

#include <cstddef>
#include <string>

namespace tarnwick::host {

struct CaptureCounts {
  size_t standIns = 0;  // private things that were replaced
  size_t leftOut = 0;   // applications
};

struct Capture {
  MachineCopy machine;
  CaptureCounts counts;
};

// `catalogue` is the path of an existing file. Two captures of one machine are the same.
Capture TakeCapture(const std::string& catalogue, bool withApplications, const LogSink& sink);

// "capture: 214 keys, 37 files, 41 executables, 12 stand-ins; 103 applications left out (--with-apps takes
// them)"
std::string CountsLine(const Capture& capture);

}  // namespace tarnwick::host
