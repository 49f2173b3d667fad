#include "launchers/appx_manifest_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

// Whatever the text, each field is a piece of it that its own closing marker doesn't belong to.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const tarnwick::AppxManifest manifest = tarnwick::ParseAppxManifest(text);
  for (const std::string_view field :
       {std::string_view(manifest.displayName), std::string_view(manifest.publisherDisplayName),
        std::string_view(manifest.executable), std::string_view(manifest.version)}) {
    Require(text.find(field) != std::string_view::npos);
  }
  Require(!tarnwick::IsResourceReference(manifest.displayName));
  Require(!tarnwick::IsResourceReference(manifest.publisherDisplayName));
  Require(manifest.displayName.find("</DisplayName>") == std::string_view::npos);
  Require(manifest.executable.find('"') == std::string_view::npos);
  Require(manifest.version.find_first_of("\">") == std::string_view::npos);
  return 0;
}
