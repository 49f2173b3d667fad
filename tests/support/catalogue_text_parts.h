#pragma once
// Catalogues of a few records, for the tests of checks.

#include <string>

namespace tarnwick::tests {

inline std::string Element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + text + "</" + name + ">";
}

inline std::string RecordOf(const std::string& inside) {
  return "<GameSignature>" + inside + "</GameSignature>";
}

inline std::string CatalogueOf(const std::string& records) {
  return "<Games xmlns:i=\"http://www.w3.org/2001/XMLSchema-instance\">" + records + "</Games>";
}

// A record without a fault, but for what is put behind its elements.
inline std::string GoodRecord(const std::string& more = "", const std::string& name = "Fernpad") {
  return RecordOf(Element("DefaultExe", "fernpad.exe") + Element("DefaultFolder", "C:\\Games\\Fernpad") +
                  Element("DisplayName", name) + more);
}

}  // namespace tarnwick::tests
