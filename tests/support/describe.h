#pragma once
// Records as one text each, so that a test compares every field at once and a failure shows them all.

#include "matching/scan_result.h"

#include <sstream>
#include <string>
#include <vector>

namespace tarnwick::tests {

// name|exePath|launchUrl|source|displayIcon|found|sourceKind|sourceExId
inline std::string Describe(const ScanResult& result) {
  std::ostringstream text;
  text << result.name << '|' << result.exePath << '|' << result.launchUrl << '|' << result.source << '|'
       << result.displayIcon << '|' << result.found << '|' << result.sourceKind << '|' << result.sourceExId;
  return text.str();
}

inline std::vector<std::string> Describe(const ScanResults& results) {
  std::vector<std::string> texts;
  for (const ScanResult& result : results) texts.push_back(Describe(result));
  return texts;
}

}  // namespace tarnwick::tests
