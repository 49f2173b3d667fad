#pragma once
// Names as they are compared where spelling may differ. UTF-8.

#include <string>

namespace tarnwick::host {

// A UTF-8 name in compatibility form (NFKD) and lower case, without combining marks and trade mark,
// registered, copyright and service mark signs; runs of white space are one blank, and none stands at either
// end. Malformed bytes become U+FFFD.
std::string FoldedName(const std::string& name);

// The folded name without white space, and with Roman numerals behind the first word turned into Arabic ones.
std::string LooseName(const std::string& name);

// Equal when loosely read, or one edit apart and with the same digits: "Foo 2" and "Foo 3" are two games.
// Both are loose names.
bool AreNear(const std::string& looseName, const std::string& otherLooseName);

}  // namespace tarnwick::host
