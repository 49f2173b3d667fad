#pragma once
// The packages of packaged applications, and what lies in their folders.

#include "launchers/appx_manifest_reader.h"

#include <string>
#include <vector>

namespace tarnwick {

struct UwpPackage {
  std::string fullName;           // name_version_architecture_resource_publisher
  std::string packageFamilyName;  // name_publisher
  std::string displayName;        // empty if only a resource knows it
  std::string publisher;          // as the manifest shows it
  std::string installedLocation;  // the package's folder; empty if the registry doesn't tell it
  bool isExcluded = false;        // a framework or resource package: never a game
};

// The family name that a package's full name holds; empty for a text of another shape.
std::string PackageFamilyNameOf(const std::string& fullName);

// The current user's packages by the registry or, if that names none, by the folders of packages on drive C.
std::vector<UwpPackage> QueryUwpPackages();

// The packages below the given folders: each direct subfolder that has a manifest. A folder that can't be
// listed is logged and passed over; what was found in it before stays.
std::vector<UwpPackage> ScanPackageFolders(const std::vector<std::string>& folders);

// All fields empty if the folder has no readable manifest.
AppxManifest ReadAppxManifest(const std::string& installedLocation);

// Does the folder hold a file that only games have?
bool HasGameIndicatorFile(const std::string& installedLocation);

}  // namespace tarnwick
