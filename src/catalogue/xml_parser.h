#pragma once
// The catalogue file, read and parsed afresh at every call. Nothing is kept between calls, so all may be made
// on any thread. No call reports failure but by an empty answer; only a lack of memory throws.

#include "catalogue/game_signature.h"

#include <string>

namespace tarnwick {

namespace XmlParser {

// The games of the catalogue at a path, in the file's order. Empty if the file can't be read, is empty or
// holds no record; the lines that this sends to the debug output, each marked "[TarnwickXml] ", tell which.
GameList LoadGameListFromXml(const std::wstring& path);

}  // namespace XmlParser

// The same for a path in the system's ANSI code page.
GameList LoadGameList(const std::string& path);

// The bytes of a catalogue file, deciphered where they are cipher text; empty if the file can't be opened.
// Bytes that neither begin with "<" nor can be deciphered come as they are.
std::string ReadCatalogueFile(const std::wstring& path);

}  // namespace tarnwick
