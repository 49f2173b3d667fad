#pragma once
// Names as they are compared where spelling may differ.

#include <string>

namespace tarnwick::host {

// A UTF-8 name in compatibility form (NFKD) and lower case, without combining marks and trade mark,
// registered, copyright and service mark signs; runs of white space are one blank, and none stands at either
// end. Malformed bytes become U+FFFD.
std::string FoldedName(const std::string& utf8);

}  // namespace tarnwick::host
