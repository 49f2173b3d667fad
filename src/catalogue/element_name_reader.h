#pragma once
// The names of the catalogue's elements: which of them a tag bears, and which others its name begins with.

#include "catalogue/game_signature.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick {

struct CatalogueElement {
  std::string_view name;
  std::string GameSignature::* field = nullptr;
};
inline constexpr std::array kElements = {
    CatalogueElement{"DisplayName", &GameSignature::DisplayName},
    CatalogueElement{"RegistryKey", &GameSignature::RegistryKey},
    CatalogueElement{"RegistryPathKeyName", &GameSignature::RegistryPathKeyName},
    CatalogueElement{"DefaultExe", &GameSignature::DefaultExe},
    CatalogueElement{"DefaultExe32", &GameSignature::DefaultExe32},
    CatalogueElement{"DefaultExe64", &GameSignature::DefaultExe64},
    CatalogueElement{"DefaultFolderExe", &GameSignature::DefaultFolderExe},
    CatalogueElement{"DefaultFolderExe32", &GameSignature::DefaultFolderExe32},
    CatalogueElement{"DefaultFolderExe64", &GameSignature::DefaultFolderExe64},
    CatalogueElement{"DefaultFolder", &GameSignature::DefaultFolder},
    CatalogueElement{"DefaultFolder32", &GameSignature::DefaultFolder32},
    CatalogueElement{"DefaultFolder64", &GameSignature::DefaultFolder64},
    CatalogueElement{"GameGUID", &GameSignature::GameGUID},
    CatalogueElement{"GameInfo", &GameSignature::GameInfo},
    CatalogueElement{"SourceExId", &GameSignature::SourceExId},
    CatalogueElement{"LaunchUrl", &GameSignature::LaunchUrl},
    CatalogueElement{"RunningExe", &GameSignature::RunningExe},
    CatalogueElement{"SourceEx"},
    CatalogueElement{"GameSignature"},  // its closing tag ends the record
};
inline constexpr size_t kElementCount = kElements.size();
inline constexpr size_t kNoElement = kElementCount;
inline constexpr size_t kSourceElement = kElementCount - 2;
inline constexpr size_t kRecordElement = kElementCount - 1;

// By element: the longest other name that its name begins with, or kNoElement.
constexpr size_t LongestOtherPrefix(size_t element) {
  size_t longest = kNoElement;
  for (size_t other = 0; other < kElementCount; ++other) {
    if (other == element || !kElements[element].name.starts_with(kElements[other].name)) continue;
    if (longest == kNoElement || kElements[other].name.size() > kElements[longest].name.size())
      longest = other;
  }
  return longest;
}

constexpr std::array<size_t, kElementCount> ShorterNames() {
  std::array<size_t, kElementCount> shorter{};
  for (size_t element = 0; element < kElementCount; ++element) shorter[element] = LongestOtherPrefix(element);
  return shorter;
}
inline constexpr std::array kShorterName = ShorterNames();

// The longest name that the text from `at` begins with, or kNoElement. Every other name it begins with is a
// beginning of that. `guess` is tried first: it saves time where it is right, and changes nothing where it is
// wrong.
size_t NameAt(const char* at, const char* end, size_t guess);

}  // namespace tarnwick
