#pragma once
// A catalogue's bytes as UTF-8.

#include "host/catalogue/fix_text.h"

#include <string>

namespace tarnwick::host {

// From UTF-16, or from the code page that the XML declaration names, where the bytes are no UTF-8 as they
// stand; UTF-8 is then declared, and a byte-order mark taken away. Bytes that would not convert whole, or
// whose encoding is not told, stay as they are.
FixedText FixEncoding(const std::string& bytes);

}  // namespace tarnwick::host
