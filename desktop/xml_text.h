#pragma once
// Text inside XML.

#include <string>

namespace tarnwick::desktop {

inline std::string XmlEscaped(const std::string& text) {
  std::string escaped;
  for (const char byte : text) {
    switch (byte) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      case '\'':
        escaped += "&apos;";
        break;
      default:
        escaped += byte;
    }
  }
  return escaped;
}

}  // namespace tarnwick::desktop
