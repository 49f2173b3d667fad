#pragma once
// The version resources of executables. There are two forms of each call, as Windows has them. Which one is
// used can change what is found, since paths and texts pass through the ANSI code page in the narrow ones.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

using VersionBlock = std::vector<unsigned char>;  // the whole resource; empty if there is none

VersionBlock ReadVersionBlock(const std::wstring& path);

// Through the narrow calls; for the functions below that bear their name.
VersionBlock ReadNarrowVersionBlock(const std::string& path);

// One row of the resource's list of translations.
struct VersionTranslation {
  uint16_t language;
  uint16_t codePage;
};

std::vector<VersionTranslation> VersionTranslations(const VersionBlock& block);

// A text of one translation, such as its FileDescription; nothing if there is none or it has no length.
std::optional<std::wstring> VersionText(const VersionBlock& block, VersionTranslation translation,
                                        const std::wstring& name);

// The list's first row; nothing if it has none.
std::optional<VersionTranslation> FirstNarrowTranslation(const VersionBlock& block);

// As UTF-8.
std::optional<std::string> NarrowVersionText(const VersionBlock& block, VersionTranslation translation,
                                             const std::string& name);

}  // namespace tarnwick
