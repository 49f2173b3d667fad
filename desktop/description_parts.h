#pragma once
// The sections of a description, one function each, and what they share.

#include "desktop/desktop.h"
#include "desktop/json_node.h"

#include <string>

namespace tarnwick::desktop {

// A text in which environment variables in percent signs are expanded.
std::string ExpandedText(const Node& node);

// A path: environment variables in percent signs are expanded. Throws JsonError unless the outcome is
// absolute.
std::string PathText(const Node& node);
std::string PathMember(const Node& node, const std::string& name);
std::string PathMember(const Node& node, const std::string& name, const std::string& whenMissing);

// "native", "32" or "64".
View ViewMember(const Node& node, View whenMissing);

// A string value, but none for an empty text.
void StringUnlessEmpty(Desktop& desktop, const std::string& key, const std::string& name,
                       const std::string& text, View view);

// The Uninstall key that most launchers write into, without a separator at its end.
extern const std::string kUninstallKey;

// description_basics.cpp
void ApplyRegistry(Desktop& desktop, const Node& node);
void ApplyFolders(Desktop& desktop, const Node& node);
void ApplyFiles(Desktop& desktop, const Node& node);
void ApplyExecutables(Desktop& desktop, const Node& node);
void ApplyIconFiles(Desktop& desktop, const Node& node);
void ApplyHeldFolders(Desktop& desktop, const Node& node);
void ApplyJunctions(Desktop& desktop, const Node& node);
void ApplyApplications(Desktop& desktop, const Node& node);
void ApplyCatalogue(Desktop& desktop, const Node& node);

// description_steam.cpp
void ApplySteam(Desktop& desktop, const Node& node);

// description_launchers.cpp
void ApplyEpic(Desktop& desktop, const Node& node);
void ApplyUplay(Desktop& desktop, const Node& node);
void ApplyBattleNet(Desktop& desktop, const Node& node);
void ApplyRiot(Desktop& desktop, const Node& node);
void ApplyMihoyo(Desktop& desktop, const Node& node);
void ApplyStore(Desktop& desktop, const Node& node);
void ApplyItch(Desktop& desktop, const Node& node);
void ApplyTwitch(Desktop& desktop, const Node& node);

// description_registry_launchers.cpp
void ApplyEa(Desktop& desktop, const Node& node);
void ApplyGog(Desktop& desktop, const Node& node);
void ApplyBethesda(Desktop& desktop, const Node& node);
void ApplyArc(Desktop& desktop, const Node& node);
void ApplyGameUx(Desktop& desktop, const Node& node);

}  // namespace tarnwick::desktop
