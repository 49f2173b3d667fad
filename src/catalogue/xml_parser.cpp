// Edge: the catalogue file.
#include "catalogue/xml_parser.h"

#include "catalogue/catalogue_reader.h"
#include "catalogue/decipher.h"
#include "foundation/conversions.h"
#include "foundation/log.h"
#include "foundation/machine/data_files.h"
#include "foundation/text.h"

#include <vector>

namespace tarnwick {
namespace {

// Kept: these lines bear a mark of their own and no time, unlike those of the log
// (docs/decisions/log-frames.md).
void Say(const std::wstring& text) { SendRawDebugText(L"[TarnwickXml] " + text + L"\n"); }

bool IsPlainXml(const std::string& text) {
  const size_t first = text.find_first_not_of(" \t\r\n");
  return first != std::string::npos && text[first] == '<';
}

}  // namespace

namespace XmlParser {

GameList LoadGameListFromXml(const std::wstring& path) {
  Say(L"Loading XML from: " + path);
  const std::string text = ReadCatalogueFile(path);
  if (text.empty()) {
    Say(L"File content is empty or file not found.");
    return {};
  }
  Say(L"File content size: " + std::to_wstring(text.size()));
  GameList games = ParseCatalogue(text);
  Say(L"Parsed " + std::to_wstring(games.size()) + L" games.");
  return games;
}

}  // namespace XmlParser

GameList LoadGameList(const std::string& path) { return XmlParser::LoadGameListFromXml(AnsiToWide(path)); }

std::string ReadCatalogueFile(const std::wstring& path) {
  const DataFile file = OpenBinaryFile(path);
  if (!*file) return {};
  std::string text = ReadAll(*file);
  if (text.empty() || IsPlainXml(text)) return text;
  std::vector<unsigned char> bytes(text.begin(), text.end());
  if (!DecipherCatalogue(bytes)) return text;
  return {bytes.begin(), bytes.end()};
}

}  // namespace tarnwick
