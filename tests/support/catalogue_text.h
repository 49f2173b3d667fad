#pragma once
// Catalogue texts for tests of whole scans.

#include <string>
#include <utility>
#include <vector>

namespace tarnwick::tests {

// One record with the given elements, such as {{"DisplayName", "Foo"}, {"SourceEx", "Steam"}}.
inline std::string CatalogueRecord(const std::vector<std::pair<std::string, std::string>>& elements) {
  std::string text = "<GameSignature>";
  for (const auto& [name, value] : elements) text += "<" + name + ">" + value + "</" + name + ">";
  return text + "</GameSignature>\n";
}

inline std::string CatalogueText(const std::vector<std::string>& records) {
  std::string text = "<?xml version=\"1.0\"?>\n<ArrayOfGameSignature>\n";
  for (const std::string& record : records) text += record;
  return text + "</ArrayOfGameSignature>\n";
}

}  // namespace tarnwick::tests
