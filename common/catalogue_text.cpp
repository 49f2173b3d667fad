// The document of a catalogue.
#include "common/catalogue_text.h"

#include "common/xml_text.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace tarnwick::common {
namespace {

struct SourceName {
  int32_t kind;
  const char* text;
};
constexpr std::array kSourceNames = {SourceName{kSourceNone, ""},
                                     SourceName{kSourceDirect, "DIRECT"},
                                     SourceName{kSourceSteam, "STEAM"},
                                     SourceName{kSourceEpic, "EPIC"},
                                     SourceName{kSourceGog, "GOG"},
                                     SourceName{kSourceUplay, "UPLAY"},
                                     SourceName{kSourceEa, "EA"},
                                     SourceName{kSourceBattleNet, "BATTLENET"},
                                     SourceName{kSourceUwp, "UWP"},
                                     SourceName{kSourceRiot, "RIOT"},
                                     SourceName{kSourceMihoyo, "MIHOYO"},
                                     SourceName{kSourceArc, "ARC"},
                                     SourceName{kSourceBethesda, "BETHESDA"}};

void AppendWithShorterNames(std::vector<CatalogueElement>& order, size_t element) {
  const std::string_view name = kElements[element].name;
  if (std::ranges::find(order, name, &CatalogueElement::name) != order.end()) return;
  if (kShorterName[element] != kNoElement) AppendWithShorterNames(order, kShorterName[element]);
  order.push_back(kElements[element]);
}

std::vector<CatalogueElement> WritingOrder() {
  std::vector<CatalogueElement> order;
  for (size_t element = 0; element < kRecordElement; ++element) AppendWithShorterNames(order, element);
  return order;
}

bool IsSpace(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

// A blank between two other characters is the only white space that readers leave alone.
bool IsLostSpace(std::string_view text, size_t at) {
  if (!IsSpace(text[at])) return false;
  return text[at] != ' ' || at == 0 || at + 1 == text.size() || IsSpace(text[at - 1]);
}

std::string FieldText(std::string_view text) {
  std::string written;
  size_t from = 0;
  for (size_t at = 0; at < text.size(); ++at) {
    if (!IsLostSpace(text, at)) continue;
    written += XmlEscaped(text.substr(from, at - from)) + "&#" + std::to_string(int{text[at]}) + ";";
    from = at + 1;
  }
  return written + XmlEscaped(text.substr(from));
}

void AppendElement(std::string& document, std::string_view name, const std::string& text) {
  if (text.empty()) return;
  document.append("    <").append(name).append(">").append(FieldText(text));
  document.append("</").append(name).append(">\n");
}

}  // namespace

const std::vector<CatalogueElement>& CatalogueElements() {
  static const std::vector<CatalogueElement> elements = WritingOrder();
  return elements;
}

std::string ElementText(const GameSignature& game, const CatalogueElement& element) {
  return element.field == nullptr ? SourceExText(game.SourceKind) : game.*element.field;
}

std::string SourceExText(int32_t kind) {
  const auto* const row = std::ranges::find(kSourceNames, kind, &SourceName::kind);
  if (row == kSourceNames.end()) throw std::runtime_error("no source has the kind " + std::to_string(kind));
  return row->text;
}

int32_t SourceKindOf(const std::string& sourceEx) {
  for (const SourceName& name : kSourceNames)
    if (name.text == sourceEx) return name.kind;
  throw std::runtime_error("no source is called '" + sourceEx + "'");
}

std::string CatalogueText(const GameList& games) {
  std::string document = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ArrayOfGameSignature>\n";
  for (const GameSignature& game : games) {
    document += "  <GameSignature>\n";
    for (const CatalogueElement& element : CatalogueElements())
      AppendElement(document, element.name, ElementText(game, element));
    document += "  </GameSignature>\n";
  }
  return document + "</ArrayOfGameSignature>\n";
}

}  // namespace tarnwick::common
