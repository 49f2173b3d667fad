#pragma once
// Icons of applications and games: from what the registry says, from a folder search, and as PNG data URIs.
//
// Nothing here reports an error: each failing source gives way to the next, and no icon is an empty Icon.
// Every Icon is the caller's own. All calls want COM set up on the calling thread.

#include "foundation/owner.h"
#include "inventory/app_record.h"
#include "inventory/icon_uris.h"
#include "inventory/png.h"

#include <cstdint>
#include <string>

namespace tarnwick {

// What a DisplayIcon text such as `"C:\Games\Foo\foo.exe",0` refers to.
struct IconReference {
  std::wstring path;
  int32_t index = 0;
};

// The outer quotes and the index behind the last comma are taken off; environment variables are expanded,
// except where something follows a closing quote.
IconReference ParseIconReference(const std::wstring& text);

// The icon that DisplayIcon refers to, unless that is an installer's or uninstaller's; otherwise the best one
// in InstallLocation, or in the uninstaller's folder where that is empty. Reads these three fields only.
Icon ResolveAppIcon(const AppRecord& record);

// The game.ico of a game that WeGame installed, otherwise the icon of the largest executable in the folder
// and the two levels below it, where "client", "main" or "app" in the name counts for 50 MiB.
// An observer hears each folder that is searched as a question of kind kListFolder with the detail
// kIconSearch; the answer has a line for each entry: its name, a tab, and "folder" or the file's bytes.
Icon TryLoadIconFromInstallLocation(const std::wstring& folder);
inline constexpr char kIconSearch[] = "icon search";

// What a file of that name, with so many bytes, counts for in that search: mebibytes, and the name's bonus.
// Below 0 for a file that is no executable, and so no candidate. The highest wins, of equal ones the first.
double IconScore(const std::wstring& fileName, uint64_t bytes);

Icon TryLoadWeGameIcon(const std::wstring& folder);

// An icon of an executable, library or .ico file, as large as there is, up to 256 pixels. Sources in order:
// PrivateExtractIconsW, the shell's image lists, ExtractIconExW, the shell's icon. A missing path is mended
// first.
Icon LoadIconFromFile(const std::wstring& path, int32_t index);

// The image nearest 256 pixels of an .ico file; empty if the file is missing.
Icon LoadIcoFile(const std::wstring& path);

// The system's generic application icon. An observer hears it asked for under this name.
inline constexpr char kGenericApplication[] = "the generic application";
Icon LoadStockApplicationIcon();

}  // namespace tarnwick
