// Edge: the shell's folders, environment variables, drives, and the kind of process.
#include "foundation/machine/known_folders.h"

#include "foundation/conversions.h"
#include "foundation/machine/observer.h"
#include "foundation/windows_api.h"

#include <shlobj.h>
#include <vector>

namespace tarnwick {
namespace {

using machine::AskMachine;

static_assert(static_cast<int>(KnownFolder::kRoamingData) == CSIDL_APPDATA);
static_assert(static_cast<int>(KnownFolder::kLocalData) == CSIDL_LOCAL_APPDATA);
static_assert(static_cast<int>(KnownFolder::kCommonData) == CSIDL_COMMON_APPDATA);
static_assert(static_cast<int>(KnownFolder::kProgramFiles) == CSIDL_PROGRAM_FILES);
static_assert(static_cast<int>(KnownFolder::kProgramFilesX86) == CSIDL_PROGRAM_FILESX86);

std::string NameOf(KnownFolder folder) {
  switch (folder) {
    case KnownFolder::kRoamingData:
      return "roaming data";
    case KnownFolder::kLocalData:
      return "local data";
    case KnownFolder::kCommonData:
      return "common data";
    case KnownFolder::kProgramFiles:
      return "program files";
    case KnownFolder::kProgramFilesX86:
      return "program files (x86)";
  }
  return std::to_string(static_cast<int>(folder));
}

std::string AskShell(int csidl) {
  char folder[MAX_PATH] = {};
  if (SHGetFolderPathA(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) return {};
  return AnsiToUtf8(folder);
}

std::string AskEnvironment(const char* name, uint32_t room) {
  std::string text(room, '\0');
  const DWORD length = GetEnvironmentVariableA(name, text.data(), room);
  return length == 0 || length >= room ? std::string() : std::string(text.c_str());
}

std::string AskExpansion(const std::string& text) {
  constexpr DWORD kBufferBytes = 32767;
  std::string buffer(kBufferBytes, '\0');
  const DWORD length = ExpandEnvironmentStringsA(text.c_str(), buffer.data(), kBufferBytes);
  return length == 0 || length > kBufferBytes ? text : std::string(buffer.c_str());
}

std::wstring AskExpansion(const std::wstring& text, uint32_t units) {
  std::vector<wchar_t> expanded(units + size_t{1}, L'\0');
  const DWORD needed = ExpandEnvironmentStringsW(text.c_str(), expanded.data(), units);
  return needed == 0 || needed > units ? text : std::wstring(expanded.data());
}

bool AskWow64() {
  BOOL wow64 = FALSE;
  return IsWow64Process(GetCurrentProcess(), &wow64) && wow64;
}

Answer TellYesOrNo(bool yes) { return {true, yes ? "yes" : "no"}; }

}  // namespace

std::string KnownFolderPath(KnownFolder folder) {
  return AskMachine([&] { return Question{QuestionKind::kKnownFolder, NameOf(folder), "", {}, {}}; },
                    [] { return std::string(); }, [&] { return AskShell(static_cast<int>(folder)); },
                    machine::TellText);
}

std::string EnvironmentText(const char* name, uint32_t room) {
  return AskMachine([&] { return Question{QuestionKind::kEnvironment, name, "", {}, {}}; },
                    [] { return std::string(); }, [&] { return AskEnvironment(name, room); },
                    machine::TellText);
}

std::string ExpandNarrowVariables(const std::string& text) {
  return AskMachine([&] { return Question{QuestionKind::kExpandText, text, "narrow", {}, {}}; },
                    [&] { return text; }, [&] { return AskExpansion(text); }, machine::TellText);
}

std::wstring ExpandVariables(const std::wstring& text, uint32_t units) {
  return AskMachine([&] { return Question{QuestionKind::kExpandText, WideToUtf8(text), "", {}, {}}; },
                    [&] { return text; }, [&] { return AskExpansion(text, units); },
                    [](const std::wstring& expanded) { return machine::TellText(WideToUtf8(expanded)); });
}

uint32_t LogicalDrives() {
  return AskMachine([] { return Question{QuestionKind::kDrives, "", "", {}, {}}; },
                    [] { return uint32_t{0}; }, [] { return static_cast<uint32_t>(GetLogicalDrives()); },
                    [](uint32_t drives) { return Answer{drives != 0, std::to_string(drives)}; });
}

bool IsFixedDrive(const std::string& root) {
  return AskMachine([&] { return Question{QuestionKind::kDriveType, root, "fixed", {}, {}}; },
                    [] { return false; }, [&] { return GetDriveTypeA(root.c_str()) == DRIVE_FIXED; },
                    TellYesOrNo);
}

bool RunsUnderWow64() {
  return AskMachine([] { return Question{QuestionKind::kProcess, "under WOW64", "", {}, {}}; },
                    [] { return false; }, AskWow64, TellYesOrNo);
}

}  // namespace tarnwick
