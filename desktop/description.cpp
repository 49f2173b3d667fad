// The sections of a description in a table, and what they share.
#include "desktop/description.h"

#include "common/wide_text.h"
#include "desktop/capture.h"
#include "desktop/description_parts.h"
#include "foundation/windows_api.h"

#include <array>

namespace tarnwick::desktop {
namespace {

struct Section {
  const char* name;
  void (*apply)(Desktop&, const Node&);
};

constexpr auto kSections = std::to_array<Section>({{"registry", ApplyRegistry},
                                                   {"folders", ApplyFolders},
                                                   {"files", ApplyFiles},
                                                   {"executables", ApplyExecutables},
                                                   {"iconFiles", ApplyIconFiles},
                                                   {"junctions", ApplyJunctions},
                                                   {"applications", ApplyApplications},
                                                   {"gameUx", ApplyGameUx},
                                                   {"steam", ApplySteam},
                                                   {"arc", ApplyArc},
                                                   {"gog", ApplyGog},
                                                   {"uplay", ApplyUplay},
                                                   {"ea", ApplyEa},
                                                   {"riot", ApplyRiot},
                                                   {"miHoYo", ApplyMihoyo},
                                                   {"bethesda", ApplyBethesda},
                                                   {"itch", ApplyItch},
                                                   {"twitch", ApplyTwitch},
                                                   {"epic", ApplyEpic},
                                                   {"store", ApplyStore},
                                                   {"battleNet", ApplyBattleNet},
                                                   {"catalogue", ApplyCatalogue},
                                                   {"heldFolders", ApplyHeldFolders}});

void RefuseUnknownSections(const Node& root) {
  for (const auto& [name, node] : Members(root)) {
    bool known = name == "comment";
    for (const Section& section : kSections) known = known || name == section.name;
    if (!known) Fail(root, "unknown section '" + name + "'");
  }
}

bool IsAbsolute(const std::string& path) {
  return path.starts_with("\\\\") ||
         (path.size() >= 3 && path[1] == ':' && (path[2] == '\\' || path[2] == '/'));
}

}  // namespace

const std::string kUninstallKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

void ApplyDescription(Desktop& desktop, const std::string& json) {
  const Json parsed = ParseJson(json);
  const Node root{&parsed, ""};
  if (IsCapture(root)) return BuildCapture(desktop, ReadCapture(root));
  RefuseUnknownSections(root);
  for (const Section& section : kSections) {
    const std::optional<Node> node = Optional(root, section.name);
    if (!node) continue;
    try {
      section.apply(desktop, *node);
    } catch (const JsonError&) {
      throw;
    } catch (const std::runtime_error& error) {
      throw std::runtime_error("in /" + std::string(section.name) + ": " + error.what());
    }
  }
}

std::string ExpandedText(const Node& node) {
  const std::wstring text = common::Wide(Text(node));
  std::wstring expanded(32768, L'\0');
  const DWORD units =
      ExpandEnvironmentStringsW(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
  if (units == 0 || units > expanded.size()) Fail(node, "is too long a text");
  expanded.resize(units - 1);
  return common::Narrow(expanded);
}

std::string PathText(const Node& node) {
  const std::string path = ExpandedText(node);
  if (!IsAbsolute(path)) Fail(node, "needs an absolute path, not '" + path + "'");
  return path;
}

std::string PathMember(const Node& node, const std::string& name) { return PathText(Member(node, name)); }

std::string PathMember(const Node& node, const std::string& name, const std::string& whenMissing) {
  const std::optional<Node> member = Optional(node, name);
  if (member) return PathText(*member);
  const Json fallback = whenMissing;
  return PathText({&fallback, node.place});
}

View ViewMember(const Node& node, View whenMissing) {
  const std::optional<Node> member = Optional(node, "view");
  if (!member) return whenMissing;
  const std::string text = Text(*member);
  if (text == "native") return View::kNative;
  if (text == "32") return View::k32;
  if (text == "64") return View::k64;
  Fail(*member, "needs \"native\", \"32\" or \"64\", not \"" + text + "\"");
}

void StringUnlessEmpty(Desktop& desktop, const std::string& key, const std::string& name,
                       const std::string& text, View view) {
  if (!text.empty()) desktop.String(key, name, text, view);
}

}  // namespace tarnwick::desktop
