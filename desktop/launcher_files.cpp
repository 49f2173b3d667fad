// Writes the launchers' files as the launchers themselves leave them, bystanders included: what a reader has
// to pass over belongs to the format as much as what it takes.
#include "desktop/launcher_files.h"

#include "common/xml_text.h"

#include <nlohmann/json.hpp>

namespace tarnwick::desktop {
namespace {

using Json = nlohmann::ordered_json;

const std::string kInstallsKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Ubisoft\\Launcher\\Installs\\";

std::string UplayExecutables(const UplayGame& game) {
  std::string text = "        executables:\n          - path:\n";
  if (!game.installId.empty())
    text += "              register: " + kInstallsKey + game.installId + "\\InstallDir\n";
  text += "              relative: " + game.relative + "\n";
  if (!game.append.empty())
    text += "            working_directory:\n              append: " + game.append + "\n";
  return text;
}

std::string AgentBlock(const BattleNetGame& game) {
  Json binary = Json::object();
  if (!game.relativePath.empty()) binary["relative_path"] = game.relativePath;
  if (!game.relativePath64.empty()) binary["relative_path_64"] = game.relativePath64;
  const Json block = {
      {"binaries", {{"game", binary}}}, {"installPath", game.installPath}, {"installed", true}};
  return block.dump(2);
}

std::string Element(const std::string& indent, const std::string& name, const std::string& text) {
  return text.empty() ? "" : indent + "<" + name + ">" + common::XmlEscaped(text) + "</" + name + ">\n";
}

std::string Attribute(const std::string& name, const std::string& text) {
  return text.empty() ? "" : " " + name + "=\"" + common::XmlEscaped(text) + "\"";
}

}  // namespace

std::string EpicItemText(const EpicGame& game) {
  const Json item = {{"FormatVersion", 0},
                     {"bIsIncompleteInstall", game.incomplete},
                     {"LaunchExecutable", game.launchExecutable},
                     {"DisplayName", game.displayName},
                     {"InstallLocation", game.installLocation},
                     {"AppCategories", game.categories},
                     {"AppName", game.appName},
                     {"MainGameAppName", game.mainGameAppName.empty() ? game.appName : game.mainGameAppName}};
  return item.dump(2);
}

std::string EpicLauncherInstalledText(const std::vector<EpicGame>& games) {
  Json list = Json::array();
  for (const EpicGame& game : games)
    list.push_back({{"InstallLocation", game.installLocation},
                    {"AppName", game.appName},
                    {"AppVersion", game.appVersion}});
  const Json whole = {{"InstallationList", list}};
  return whole.dump(2);
}

std::string UplayConfigurationsText(const std::vector<UplayGame>& games) {
  std::string text("\x08\x96\x01\x12", 4);
  for (const UplayGame& game : games) {
    text += "\nroot:\n  name: \"" + game.name + "\"\n  start_game:\n    online:\n" + UplayExecutables(game);
    if (game.offline) text += "    offline:\n" + UplayExecutables(game);
    text += std::string("\x08\x00\x12\xF3\x01", 5);
  }
  return text;
}

std::string BattleNetAgentLogText(const std::vector<BattleNetGame>& games) {
  std::string text =
      "[I 2024-05-01 10:00:00.0000] Agent started\n[I 2024-05-01 10:00:01.0000] Request GET /agent\n";
  for (const BattleNetGame& game : games)
    text += "[I 2024-05-01 10:00:02.0000] Request GET /game/" + game.gameId +
            " HTTP/1.1\n[I 2024-05-01 10:00:02.0100] Response\n" + AgentBlock(game) + "\n";
  return text + "[I 2024-05-01 10:00:03.0000] Request POST /update\n";
}

std::string RiotClientInstallsText(const std::string& launchHelper) {
  const Json installs = {
      {"associated_client", Json::object()}, {"rc_default", launchHelper}, {"rc_live", launchHelper}};
  return installs.dump(4);
}

std::string RiotProductSettingsText(const std::string& installPath) {
  return "auto_patching_enabled_by_player: false\nlocale_data:\n    default_locale: \"en_US\"\n"
         "product_install_full_path: \"" +
         installPath + "\"\nproduct_install_root: \"C:/\"\n";
}

std::string MihoyoGameDataBytes(const std::vector<MihoyoGame>& games) {
  std::string bytes("\x00\x01}\x0F\xFF", 5);
  for (const MihoyoGame& game : games) {
    const Json block = {{"gameBiz", game.gameBiz},
                        {"installPath", game.installPath},
                        {"gameShortcutName", game.gameShortcutName}};
    bytes += block.dump();
    bytes += std::string("\x00\x10\xFE\x00", 4);
  }
  return bytes;
}

std::string AppxManifestText(const StoreManifest& manifest) {
  const std::string identity =
      Attribute("Name", manifest.identityName) + Attribute("Version", manifest.version);
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
         "<Package xmlns=\"http://schemas.microsoft.com/appx/manifest/foundation/windows10\">\n"
         "  <Identity" +
         identity + "/>\n  <Properties>\n" + Element("    ", "DisplayName", manifest.displayName) +
         Element("    ", "PublisherDisplayName", manifest.publisherDisplayName) +
         "  </Properties>\n  <Applications>\n    <Application Id=\"App\"" +
         Attribute("Executable", manifest.executable) + "/>\n  </Applications>\n</Package>\n";
}

std::string StoreEntitlementsText(const std::vector<StoreEntitlement>& entitlements) {
  Json list = Json::array();
  for (const StoreEntitlement& entitlement : entitlements)
    list.push_back({{"ProductId", entitlement.productId}, {"ProductKind", entitlement.productKind}});
  const Json whole = {{"Version", 1}, {"Entitlements", list}};
  return whole.dump(2);
}

std::string StoreFulfillmentText(const std::string& productId, const std::string& packageFamilyName) {
  const Json whole = {
      {"FulfillmentData", {{"ProductId", productId}, {"PackageFamilyName", packageFamilyName}}}};
  return whole.dump();
}

}  // namespace tarnwick::desktop
