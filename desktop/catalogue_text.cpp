// The catalogue's elements in a table, and the document made of them.
#include "desktop/catalogue_text.h"

#include "desktop/xml_text.h"

#include <stdexcept>

namespace tarnwick::desktop {
namespace {

struct SourceName {
  int32_t kind;
  const char* text;
};

const std::vector<SourceName>& SourceNames() {
  static const std::vector<SourceName> names = {{kSourceNone, ""},
                                                {kSourceDirect, "DIRECT"},
                                                {kSourceSteam, "STEAM"},
                                                {kSourceEpic, "EPIC"},
                                                {kSourceGog, "GOG"},
                                                {kSourceUplay, "UPLAY"},
                                                {kSourceEa, "EA"},
                                                {kSourceBattleNet, "BATTLENET"},
                                                {kSourceUwp, "UWP"},
                                                {kSourceRiot, "RIOT"},
                                                {kSourceMihoyo, "MIHOYO"},
                                                {kSourceArc, "ARC"},
                                                {kSourceBethesda, "BETHESDA"}};
  return names;
}

std::string Element(const std::string& name, const std::string& text) {
  return text.empty() ? "" : "    <" + name + ">" + XmlEscaped(text) + "</" + name + ">\n";
}

}  // namespace

const std::vector<CatalogueElement>& CatalogueElements() {
  static const std::vector<CatalogueElement> elements = {
      {"DisplayName", &GameSignature::DisplayName},
      {"RegistryKey", &GameSignature::RegistryKey},
      {"RegistryPathKeyName", &GameSignature::RegistryPathKeyName},
      {"DefaultExe", &GameSignature::DefaultExe},
      {"DefaultExe32", &GameSignature::DefaultExe32},
      {"DefaultExe64", &GameSignature::DefaultExe64},
      {"DefaultFolder", &GameSignature::DefaultFolder},
      {"DefaultFolder32", &GameSignature::DefaultFolder32},
      {"DefaultFolder64", &GameSignature::DefaultFolder64},
      {"DefaultFolderExe", &GameSignature::DefaultFolderExe},
      {"DefaultFolderExe32", &GameSignature::DefaultFolderExe32},
      {"DefaultFolderExe64", &GameSignature::DefaultFolderExe64},
      {"GameGUID", &GameSignature::GameGUID},
      {"GameInfo", &GameSignature::GameInfo},
      {"SourceExId", &GameSignature::SourceExId},
      {"LaunchUrl", &GameSignature::LaunchUrl},
      {"RunningExe", &GameSignature::RunningExe}};
  return elements;
}

std::string SourceExText(int32_t kind) {
  for (const SourceName& name : SourceNames())
    if (name.kind == kind) return name.text;
  throw std::runtime_error("no source has the kind " + std::to_string(kind));
}

int32_t SourceKindOf(const std::string& sourceEx) {
  for (const SourceName& name : SourceNames())
    if (name.text == sourceEx) return name.kind;
  throw std::runtime_error("no source is called '" + sourceEx + "'");
}

std::string CatalogueText(const GameList& games) {
  std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<ArrayOfGameSignature>\n";
  for (const GameSignature& game : games) {
    text += "  <GameSignature>\n";
    text += Element("SourceEx", SourceExText(game.SourceKind));
    for (const CatalogueElement& element : CatalogueElements())
      text += Element(element.name, game.*element.field);
    text += "  </GameSignature>\n";
  }
  return text + "</ArrayOfGameSignature>\n";
}

}  // namespace tarnwick::desktop
