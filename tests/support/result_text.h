#pragma once
// Scan results as texts, so that tests compare all eight fields at once and failures can be read.

#include "matching/scan_result.h"

#include <string>
#include <vector>

namespace tarnwick::tests {

// "name | exePath | launchUrl | source", and the other fields only where they differ from what strategies
// leave.
inline std::string ResultText(const ScanResult& result) {
  std::string text = result.name + " | " + result.exePath + " | " + result.launchUrl + " | " + result.source;
  if (!result.found) text += " | not found";
  if (!result.displayIcon.empty()) text += " | icon " + result.displayIcon;
  if (result.sourceKind != 0) text += " | kind " + std::to_string(result.sourceKind);
  if (!result.sourceExId.empty()) text += " | id " + result.sourceExId;
  return text;
}

inline std::vector<std::string> ResultTexts(const ScanResults& results) {
  std::vector<std::string> texts;
  for (const ScanResult& result : results) texts.push_back(ResultText(result));
  return texts;
}

}  // namespace tarnwick::tests
