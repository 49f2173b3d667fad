#pragma once
// A catalogue's text with what can be mended without a guess mended: the order of elements, white space, and
// records that are equal in all fields. What is read of the fixed text differs from before only where an
// element was swallowed.

#include "host/catalogue/check_codes.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::host {

struct FixStep {
  size_t at = 0;  // the offset in the text that was read
  Check check = kSwallowedElement;
  std::string message;  // what was done, in one line
};

struct FixedText {
  std::string text;
  std::vector<FixStep> steps;                                // in their order; the first kMostFindings
  std::array<size_t, static_cast<size_t>(kCount)> counts{};  // of all steps, by what they mend
};

void AddStep(FixedText& fixed, FixStep step);

// `text` is UTF-8. A second call with its result changes nothing.
FixedText FixText(std::string_view text);

// The text without its byte-order mark, and with UTF-8 declared where it declares another encoding.
FixedText FixDeclaration(std::string_view text);

}  // namespace tarnwick::host
