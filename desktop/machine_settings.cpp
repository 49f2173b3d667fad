#include "desktop/machine_settings.h"

#include "common/capture_rules.h"

#include <array>

namespace tarnwick::desktop {
namespace {

struct Setting {
  const char* subject;
  const char* key;
  const char* value;
  View view = View::kNative;
};

constexpr const char* kUserShell =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
constexpr const char* kUserPlain =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr const char* kCommonShell =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
constexpr const char* kCommonPlain =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr const char* kProfiles =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";
constexpr const char* kVersion = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion";

constexpr auto kFolderSettings = std::to_array<Setting>({
    {"roaming data", kUserShell, "AppData"},
    {"roaming data", kUserPlain, "AppData"},
    {"local data", kUserShell, "Local AppData"},
    {"local data", kUserPlain, "Local AppData"},
    {"common data", kCommonShell, "Common AppData"},
    {"common data", kCommonPlain, "Common AppData"},
    {"common data", kProfiles, "ProgramData"},
    {"program files", kVersion, "ProgramFilesDir", View::k64},
    {"program files (x86)", kVersion, "ProgramFilesDir (x86)", View::k64},
    {"program files (x86)", kVersion, "ProgramFilesDir", View::k32},
});

// Variables that a program is told from elsewhere than the two keys of variables.
constexpr auto kVariableSettings = std::to_array<Setting>({
    {"ALLUSERSPROFILE", kProfiles, "ProgramData"},
    {"PROGRAMDATA", kProfiles, "ProgramData"},
    {"PUBLIC", kProfiles, "Public"},
    {"PROGRAMFILES", kVersion, "ProgramFilesDir", View::k64},
    {"PROGRAMW6432", kVersion, "ProgramFilesDir", View::k64},
    {"PROGRAMFILES(X86)", kVersion, "ProgramFilesDir (x86)", View::k64},
    {"COMMONPROGRAMFILES", kVersion, "CommonFilesDir", View::k64},
    {"COMMONPROGRAMW6432", kVersion, "CommonFilesDir", View::k64},
    {"COMMONPROGRAMFILES(X86)", kVersion, "CommonFilesDir (x86)", View::k64},
});

void Apply(Desktop& desktop, const Setting& setting, const std::string& text) {
  desktop.String(setting.key, setting.value, text, setting.view);
}

}  // namespace

bool IsKnownFolder(const std::string& name) {
  for (const Setting& setting : kFolderSettings)
    if (name == setting.subject) return true;
  return false;
}

void SetKnownFolder(Desktop& desktop, const std::string& name, const std::string& path) {
  // The shell names no folder that isn't there.
  desktop.Folder(path);
  for (const Setting& setting : kFolderSettings)
    if (name == setting.subject) Apply(desktop, setting, path);
}

void SetVariable(Desktop& desktop, const std::string& name, const std::string& text) {
  if (common::IsMachinesOwnVariable(name)) return;
  desktop.String("HKEY_CURRENT_USER\\Environment", name, text);
  desktop.String("HKEY_CURRENT_USER\\Volatile Environment", name, text);
  const std::string folded = common::Folded(name);
  for (const Setting& setting : kVariableSettings)
    if (folded == setting.subject) Apply(desktop, setting, text);
}

}  // namespace tarnwick::desktop
