#pragma once
// AppxManifest.xml of a packaged application. The text is searched for literal markers, and must go on being
// so: no element is parsed, and no entity or escape is undone. What can't be found is empty.

#include <string>
#include <string_view>

namespace tarnwick {

struct AppxManifest {
  std::string displayName;           // never a resource reference
  std::string publisherDisplayName;  // never a resource reference
  std::string executable;            // of the first application, relative to the package's folder
  std::string version;
  bool isFramework = false;  // a framework or resource package: something that applications are made of
};

AppxManifest ParseAppxManifest(std::string_view text);

// A name that stands for a text in the package's resources, and so is none that could be shown.
bool IsResourceReference(std::string_view name);

}  // namespace tarnwick
