#pragma once
// The list of games that Windows keeps for its game explorer, as both GameUX strategies see it.

#include <map>
#include <string>

namespace tarnwick {

// The list's key; each of its subkeys is one game. Ends in a backslash.
inline constexpr char kGameUxListKey[] =
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\GameUX\Games\)";

// One game of the list. Paths are empty where the registry has none.
struct GameUxEntry {
  std::string appExePath;
  std::string configGdfBinaryPath;
  std::string keyPath;        // key text of the game's subkey
  std::string pathField;      // name of the value that led to an executable; empty from the Info reader
  std::string applicationId;  // a GUID without braces; from the Info reader the subkey's name
};

// By applicationId, byte by byte.
using GameUxEntries = std::map<std::string, GameUxEntry>;

// Does the path hold ".exe" anywhere, in any case, and name an existing file?
bool IsGameUxExecutable(const std::string& path);

// The first of appExePath and configGdfBinaryPath that passes the test above; empty if none does.
std::string FindGameUxExecutable(const GameUxEntry& entry);

}  // namespace tarnwick
