// tarnwick catalogue fix, for those who keep catalogues.
#include "host/commands.h"

namespace tarnwick::host {

int RunCatalogueFix(const Options&) { return kExitFailure; }

}  // namespace tarnwick::host
