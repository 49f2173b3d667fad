#include "host/library_call.h"

namespace tarnwick::host {

const Library& TheLibrary() {
  static const Library library(PathBesideProgram());
  return library;
}

}  // namespace tarnwick::host
