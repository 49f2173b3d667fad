#include "common/capture_rules.h"

#include "common/wide_text.h"
#include "foundation/windows_api.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace tarnwick::common {
namespace {

constexpr size_t kLongestName = 255;  // UTF-16 units, of a file's name and of a key's
constexpr size_t kLongestPath = 32000;

using Names = std::vector<std::string>;

Names Split(const std::string& text) {
  Names names;
  size_t start = 0;
  for (size_t end = 0; end != std::string::npos; start = end + 1) {
    end = text.find('\\', start);
    const std::string name = text.substr(start, end == std::string::npos ? end : end - start);
    if (!name.empty()) names.push_back(name);
  }
  return names;
}

std::string Joined(const Names& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : "\\") + name;
  return text;
}

size_t Units(const std::string& text) { return Wide(text).size(); }

bool HasControls(const std::string& text) {
  return std::any_of(text.begin(), text.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < ' ' || byte == '\x7F'; });
}

// COM1 and its like are devices with any extension, and with the superscript digits too.
bool IsDevice(const std::string& name) {
  static const std::set<std::string> plain = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
  static const std::set<std::string> numbers = {"0", "1", "2", "3", "4", "5", "6",
                                                "7", "8", "9", "¹", "²", "³"};
  std::string base = Folded(name.substr(0, name.find('.')));
  while (base.ends_with(' ')) base.pop_back();
  if (plain.contains(base)) return true;
  return (base.starts_with("COM") || base.starts_with("LPT")) && numbers.contains(base.substr(3));
}

std::string NameFault(const std::string& name) {
  if (name == "." || name == "..") return "has the name '" + name + "', which leads elsewhere";
  if (HasControls(name) || name.find_first_of("<>:\"|?*/") != std::string::npos)
    return "has a character that no file's name may have";
  if (name.ends_with('.') || name.ends_with(' ')) return "has a name that ends in a dot or a blank";
  if (IsDevice(name)) return "has the name of a device";
  if (Units(name) > kLongestName) return "has a name of more than 255 characters";
  return {};
}

// On the system's drive, by their first name. Installer keeps the icons of installed applications.
constexpr auto kSystemFolders = std::to_array<std::string_view>(
    {"WINDOWS", "$RECYCLE.BIN", "SYSTEM VOLUME INFORMATION", "BOOT", "RECOVERY", "EFI", "CONFIG.MSI"});
constexpr std::string_view kInstallerFolder = "C:\\WINDOWS\\INSTALLER\\";

std::string SystemFault(const std::string& path, const Names& names) {
  const std::string folded = Folded(path);
  for (const std::string_view system : kSystemFolders) {
    const std::string root = "C:\\" + std::string(system) + "\\";
    if ((folded + "\\").starts_with(root) && !folded.starts_with(kInstallerFolder))
      return "lies in one of the system's own folders";
  }
  for (const std::string& name : names)
    if (Folded(name) == "START MENU") return "lies in a Start menu, whose programs the system starts";
  return {};
}

bool BeginsWithDrive(const std::string& path) {
  return path.size() >= 3 && path[1] == ':' && path[2] == '\\' &&
         ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'));
}

// The hives that an application writes its keys into, and nothing else of the registry.
constexpr auto kHives =
    std::to_array<std::string_view>({"HKEY_LOCAL_MACHINE\\SOFTWARE", "HKEY_CURRENT_USER\\SOFTWARE"});

// Below those: what belongs to Windows or Wine, and what of it may be captured all the same, because
// applications register there.
constexpr auto kSystemKeys = std::to_array<std::string_view>({"CLASSES", "MICROSOFT", "POLICIES", "WINE"});
constexpr auto kOpenKeys = std::to_array<std::string_view>(
    {"CLASSES\\LOCAL SETTINGS\\SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\APPMODEL\\REPOSITORY\\PACKAGES",
     "MICROSOFT\\GAMES", "MICROSOFT\\GAMINGSERVICES", "MICROSOFT\\MICROSOFT GAMES",
     "MICROSOFT\\WINDOWS\\CURRENTVERSION\\GAMEUX",
     "MICROSOFT\\WINDOWS\\CURRENTVERSION\\INSTALLAGENT\\CATEGORYCACHE",
     "MICROSOFT\\WINDOWS\\CURRENTVERSION\\INSTALLSERVICE\\STATE\\CATEGORYCACHE",
     "MICROSOFT\\WINDOWS\\CURRENTVERSION\\UNINSTALL"});

bool IsBelow(const std::string& key, std::string_view root) {
  return (key + "\\").starts_with(std::string(root) + "\\");
}

bool LeadsTo(const std::string& key, std::string_view root) {
  return std::string(root).starts_with(key + "\\");
}

// `below` is what stands behind SOFTWARE, folded.
std::string SystemKeyFault(const std::string& below, bool hasValues) {
  for (const std::string_view open : kOpenKeys)
    if (IsBelow(below, open) || (!hasValues && LeadsTo(below, open))) return {};
  for (const std::string_view system : kSystemKeys)
    if (IsBelow(below, system)) return "belongs to the system, not to an application";
  return {};
}

// The 32-bit view by its other name is the same place.
std::string WithoutWow(const std::string& below) {
  constexpr std::string_view wow = "WOW6432NODE";
  if (below == wow) return {};
  return IsBelow(below, wow) ? below.substr(wow.size() + 1) : below;
}

}  // namespace

std::string Folded(const std::string& text) {
  std::wstring wide = Wide(text);
  if (wide.empty()) return {};
  const int units = static_cast<int>(wide.size());
  std::wstring upper(wide.size(), L'\0');
  LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, wide.data(), units, upper.data(), units, nullptr,
                nullptr, 0);
  return Narrow(upper);
}

std::string TidyPath(const std::string& path) {
  std::string tidy = path;
  std::replace(tidy.begin(), tidy.end(), '/', '\\');
  if (!BeginsWithDrive(tidy)) return tidy;
  const std::string names = Joined(Split(tidy.substr(3)));
  return tidy.substr(0, 3) + names;
}

std::string PathFault(const std::string& path, const std::set<char>& drives) {
  if (!BeginsWithDrive(path)) return "is not a path that begins with a drive";
  const char drive = static_cast<char>(path[0] & ~0x20);
  if (!drives.contains(drive)) return "lies on no drive of the captured machine";
  if (Units(path) > kLongestPath) return "is too long a path";
  const Names names = Split(path.substr(3));
  for (const std::string& name : names)
    if (const std::string fault = NameFault(name); !fault.empty()) return fault;
  return SystemFault(path, names);
}

std::string SystemPathFault(const std::string& path) { return SystemFault(path, Split(path)); }

std::string TidyKey(const std::string& key) {
  Names names = Split(key);
  if (!names.empty()) names.front() = Folded(names.front());
  return Joined(names);
}

std::string KeyFault(const std::string& key, bool hasValues) {
  if (HasControls(key)) return "has a character that no key's name may have";
  for (const std::string& name : Split(key))
    if (Units(name) > kLongestName) return "has a name of more than 255 characters";
  if (Units(key) > kLongestPath) return "is too long a key";
  const std::string folded = Folded(key);
  for (const std::string_view hive : kHives) {
    if (!IsBelow(folded, hive)) continue;
    const std::string below = folded == hive ? "" : WithoutWow(folded.substr(hive.size() + 1));
    if (below.empty()) return hasValues ? "holds values of the system's" : "";
    return SystemKeyFault(below, hasValues);
  }
  return "is outside HKEY_LOCAL_MACHINE\\SOFTWARE and HKEY_CURRENT_USER\\Software";
}

std::string VariableFault(const std::string& name) {
  const bool plain = std::all_of(name.begin(), name.end(), [](char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '_' || byte == '(' || byte == ')';
  });
  return plain && !name.empty() && name.size() < 256 ? "" : "is no name of an environment variable";
}

bool IsMachinesOwnVariable(const std::string& name) {
  static const std::set<std::string> own = {"COMSPEC",     "OS",         "PATH", "PATHEXT", "PSMODULEPATH",
                                            "SYSTEMDRIVE", "SYSTEMROOT", "TEMP", "TMP",     "WINDIR"};
  const std::string folded = Folded(name);
  return own.contains(folded) || folded.starts_with("WINE") || folded.starts_with("TARNWICK");
}

}  // namespace tarnwick::common
