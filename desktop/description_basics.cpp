// The sections that say outright what to make: registry, files, executables, applications, the catalogue.
#include "common/catalogue_text.h"
#include "desktop/description_parts.h"

#include <limits>

namespace tarnwick::desktop {
namespace {

constexpr uint64_t kAny32 = std::numeric_limits<uint32_t>::max();
constexpr uint64_t kAny64 = std::numeric_limits<uint64_t>::max();

struct ValuePlace {
  std::string key;
  std::string name;
  View view;
};

// A value told by an object: the member's name tells the type.
void ApplyTypedValue(Desktop& desktop, const ValuePlace& place, const Node& node) {
  const auto& [key, name, view] = place;
  OnlyMembers(node, {"path", "expand", "multi", "dword", "qword", "hex", "type"});
  const std::optional<Node> type = Optional(node, "type");
  if (node.value->size() != (type ? 2u : 1u)) Fail(node, "needs exactly one kind of content");
  if (type) {
    const std::string bytes = HexBytes(Member(node, "hex"));
    desktop.RawValue(key, name, static_cast<uint32_t>(Number(*type, kAny32)), bytes, view);
  } else if (const auto path = Optional(node, "path")) {
    desktop.String(key, name, PathText(*path), view);
  } else if (const auto text = Optional(node, "expand")) {
    desktop.ExpandString(key, name, Text(*text), view);
  } else if (const auto texts = Optional(node, "multi")) {
    desktop.MultiString(key, name, Texts(*texts), view);
  } else if (const auto dword = Optional(node, "dword")) {
    desktop.Dword(key, name, static_cast<uint32_t>(Number(*dword, kAny32)), view);
  } else if (const auto qword = Optional(node, "qword")) {
    desktop.Qword(key, name, Number(*qword, kAny64), view);
  } else {
    desktop.Binary(key, name, HexBytes(Member(node, "hex")), view);
  }
}

void ApplyValue(Desktop& desktop, const ValuePlace& place, const Node& node) {
  if (node.value->is_string())
    desktop.String(place.key, place.name, Text(node), place.view);
  else if (node.value->is_number())
    desktop.Dword(place.key, place.name, static_cast<uint32_t>(Number(node, kAny32)), place.view);
  else if (node.value->is_object())
    ApplyTypedValue(desktop, place, node);
  else
    Fail(node, "needs a text, a number or an object that tells the type");
}

uint32_t ColourText(const Node& node) {
  const std::string text = Text(node);
  const Json digits = text.empty() ? "" : text.substr(1);
  if (text.size() != 7 || text[0] != '#') Fail(node, "needs a colour such as \"#3366CC\"");
  const std::string bytes = HexBytes({&digits, node.place});
  uint32_t rgb = 0;
  for (const char byte : bytes) rgb = (rgb << 8) | static_cast<unsigned char>(byte);
  return rgb;
}

IconImage ReadIconImage(const Node& node) {
  OnlyMembers(node, {"size", "color"});
  const int size = static_cast<int>(Number(Member(node, "size"), 256));
  if (size == 0) Fail(node, "an image has 1 to 256 pixels");
  return {size, ColourText(Member(node, "color"))};
}

// One colour in all usual sizes, or a list of images.
IconGroup ReadIconGroup(const Node& node) {
  IconGroup group;
  if (node.value->is_string()) {
    for (const int size : {16, 32, 48, 256}) group.images.push_back({size, ColourText(node)});
    return group;
  }
  for (const Node& item : Items(node)) group.images.push_back(ReadIconImage(item));
  return group;
}

VersionStrings ReadVersion(const Node& node) {
  OnlyMembers(node, {"language", "codePage", "strings"});
  VersionStrings version;
  if (const auto language = Optional(node, "language"))
    version.language = static_cast<uint16_t>(Number(*language, 0xFFFF));
  if (const auto page = Optional(node, "codePage"))
    version.codePage = static_cast<uint16_t>(Number(*page, 0xFFFF));
  for (const auto& [name, text] : Members(Member(node, "strings"))) version.values[name] = Text(text);
  return version;
}

ExecutableOptions ReadExecutableOptions(const Node& node) {
  ExecutableOptions options;
  if (const auto icon = Optional(node, "icon")) options.icons.push_back(ReadIconGroup(*icon));
  for (const Node& icon : ItemsMember(node, "icons")) options.icons.push_back(ReadIconGroup(icon));
  if (const auto text = Optional(node, "description"))
    options.versions.push_back({0x0409, 1200, {{"FileDescription", Text(*text)}}});
  for (const Node& version : ItemsMember(node, "versions")) options.versions.push_back(ReadVersion(version));
  if (const auto size = Optional(node, "size")) options.size = Number(*size, kAny32);
  return options;
}

void ApplyModified(Desktop& desktop, const std::string& path, const Node& node) {
  if (const auto modified = Optional(node, "modified")) desktop.ModifiedTime(path, Integer(*modified));
}

void ApplyFile(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"path", "text", "hex", "sparseSize", "modified"});
  const std::string path = PathMember(node, "path");
  const size_t contents =
      node.value->count("text") + node.value->count("hex") + node.value->count("sparseSize");
  if (contents > 1) Fail(node, "needs one kind of content: text, hex or sparseSize");
  if (const auto text = Optional(node, "text"))
    desktop.File(path, Text(*text));
  else if (const auto hex = Optional(node, "hex"))
    desktop.File(path, HexBytes(*hex));
  else if (const auto size = Optional(node, "sparseSize"))
    desktop.SparseFile(path, Number(*size, kAny64));
  else
    desktop.File(path);
  ApplyModified(desktop, path, node);
}

GameSignature ReadSignature(const Node& node) {
  GameSignature game;
  for (const auto& [name, member] : Members(node)) {
    if (name == "SourceEx") {
      try {
        game.SourceKind = common::SourceKindOf(Text(member));
      } catch (const JsonError&) {
        throw;
      } catch (const std::runtime_error& error) {
        Fail(member, error.what());
      }
      continue;
    }
    bool known = false;
    for (const CatalogueElement& element : common::CatalogueElements()) {
      if (name != element.name || element.field == nullptr) continue;
      game.*element.field = Text(member);
      known = true;
    }
    if (!known) Fail(node, "unknown member '" + name + "': no element of the catalogue is called so");
  }
  return game;
}

// Where applications register, by hive. The members' names on the left, the values' names on the right.
struct ApplicationText {
  const char* member;
  const char* value;
};
constexpr ApplicationText kApplicationTexts[] = {
    {"publisher", "Publisher"}, {"version", "DisplayVersion"},    {"installDate", "InstallDate"},
    {"icon", "DisplayIcon"},    {"uninstall", "UninstallString"},
};

void ApplyApplication(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"key", "user", "view", "name", "publisher", "version", "installDate", "location", "icon",
                     "uninstall", "sizeKb", "systemComponent"});
  const std::string root = FlagMember(node, "user", false)
                               ? "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"
                               : kUninstallKey;
  const std::string key = root + "\\" + TextMember(node, "key");
  const View view = ViewMember(node, View::k64);
  desktop.String(key, "DisplayName", TextMember(node, "name"), view);
  for (const ApplicationText& text : kApplicationTexts)
    if (const auto member = Optional(node, text.member))
      desktop.String(key, text.value, ExpandedText(*member), view);
  if (Optional(node, "location")) desktop.String(key, "InstallLocation", PathMember(node, "location"), view);
  if (const auto size = Optional(node, "sizeKb"))
    desktop.Dword(key, "EstimatedSize", static_cast<uint32_t>(Number(*size, kAny32)), view);
  if (FlagMember(node, "systemComponent", false)) desktop.Dword(key, "SystemComponent", 1, view);
}

}  // namespace

void ApplyRegistry(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) {
    OnlyMembers(item, {"key", "view", "values"});
    const std::string key = TextMember(item, "key");
    const View view = ViewMember(item, View::kNative);
    desktop.Key(key, view);
    if (const auto values = Optional(item, "values"))
      for (const auto& [name, value] : Members(*values)) ApplyValue(desktop, {key, name, view}, value);
  }
}

void ApplyFolders(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) desktop.Folder(PathText(item));
}

void ApplyHeldFolders(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) {
    desktop.Folder(PathText(item));
    desktop.HoldFolder(PathText(item));
  }
}

void ApplyFiles(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) ApplyFile(desktop, item);
}

void ApplyExecutables(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) {
    OnlyMembers(item, {"path", "icon", "icons", "description", "versions", "size", "modified"});
    const std::string path = PathMember(item, "path");
    desktop.Executable(path, ReadExecutableOptions(item));
    ApplyModified(desktop, path, item);
  }
}

void ApplyIconFiles(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) {
    OnlyMembers(item, {"path", "icon"});
    desktop.IconFile(PathMember(item, "path"), ReadIconGroup(Member(item, "icon")));
  }
}

void ApplyJunctions(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) {
    OnlyMembers(item, {"path", "target"});
    desktop.Junction(PathMember(item, "path"), PathMember(item, "target"));
  }
}

void ApplyApplications(Desktop& desktop, const Node& node) {
  for (const Node& item : Items(node)) ApplyApplication(desktop, item);
}

void ApplyCatalogue(Desktop& desktop, const Node& node) {
  OnlyMembers(node, {"path", "games"});
  GameList games;
  for (const Node& item : Items(Member(node, "games"))) games.push_back(ReadSignature(item));
  desktop.File(PathMember(node, "path"), common::CatalogueText(games));
}

}  // namespace tarnwick::desktop
