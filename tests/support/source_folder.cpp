#include "support/source_folder.h"

namespace tarnwick::tests {

std::string SourceFolder() { return TARNWICK_SOURCE_DIR; }

}  // namespace tarnwick::tests
