#pragma once
// Names as people compare them. UTF-8; malformed bytes count as U+FFFD.

#include <string>

namespace tarnwick::host {

// Without accents and letter case: what two names have in common that a person would call the same word. The
// compatibility forms of letters are taken apart too, so "\u2163" is "iv" and "\uFF21" is "a".
std::string FoldedName(const std::string& name);

// The folded name without white space and trademark signs, and with Roman numerals behind the first word
// turned into Arabic ones.
std::string LooseName(const std::string& name);

// Equal when loosely read, or one edit apart and with the same digits: "Foo 2" and "Foo 3" are two games.
// Both are loose names.
bool AreNear(const std::string& looseName, const std::string& otherLooseName);

}  // namespace tarnwick::host
