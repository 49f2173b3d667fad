#pragma once
// A capture as text: the JSON that is written, and the list of what stands in it.

#include "host/capture/machine_copy.h"

#include <string>

namespace tarnwick::host {

// docs/schemas/capture.schema.json. One line for each value, file and picture.
std::string CaptureJson(const MachineCopy& machine);

// One line for each key, folder, file, program and missing place: its kind, the bytes that are written of it,
// its name.
std::string CaptureList(const MachineCopy& machine);

}  // namespace tarnwick::host
