#pragma once
// The shell's folders, environment variables, drives, and whether the process runs under WOW64.

#include <cstdint>
#include <string>

namespace tarnwick {

// By their CSIDL numbers.
enum class KnownFolder {
  kRoamingData = 26,
  kLocalData = 28,
  kCommonData = 35,
  kProgramFiles = 38,
  kProgramFilesX86 = 42,
};

// SHGetFolderPathA, as UTF-8; empty if that fails.
std::string KnownFolderPath(KnownFolder folder);

// An environment variable through the ANSI call, its bytes as they are; empty if there is none, or if it
// needs more than `room` bytes with its zero.
std::string EnvironmentText(const char* name, uint32_t room);

// Environment variables expanded (ExpandEnvironmentStringsA, up to 32767 bytes); the text itself if that
// fails.
std::string ExpandNarrowVariables(const std::string& text);

// Environment variables expanded into `units` wide characters; the text itself if that fails or has no room.
std::wstring ExpandVariables(const std::wstring& text, uint32_t units);

// One bit for each drive, from A on.
uint32_t LogicalDrives();

// For a root such as "C:\".
bool IsFixedDrive(const std::string& root);

// Does this process run as a 32-bit one on a 64-bit Windows?
bool RunsUnderWow64();

}  // namespace tarnwick
