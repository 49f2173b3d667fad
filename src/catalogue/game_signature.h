#pragma once
// One record of the catalogue. A plain record: copied by value, all texts UTF-8, an absent element is an
// empty text.

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick {

// Where a game comes from. The number 4 is never produced.
enum SourceKind : int32_t {
  kSourceNone = 0,
  kSourceDirect = 1,
  kSourceSteam = 2,
  kSourceEpic = 3,
  kSourceGog = 5,
  kSourceUplay = 6,
  kSourceEa = 7,
  kSourceBattleNet = 8,
  kSourceUwp = 9,
  kSourceRiot = 10,
  kSourceMihoyo = 11,
  kSourceArc = 12,
  kSourceBethesda = 13,
};

struct GameSignature {
  std::string DisplayName;          // becomes the name of a result
  std::string RegistryKey;          // full key text with the hive's long name
  std::string RegistryPathKeyName;  // value below RegistryKey that holds the install path
  std::string DefaultExe;
  std::string DefaultExe32;
  std::string DefaultExe64;
  std::string DefaultFolderExe;  // executables relative to the default folder, separated by '|'
  std::string DefaultFolderExe32;
  std::string DefaultFolderExe64;
  std::string DefaultFolder;
  std::string DefaultFolder32;
  std::string DefaultFolder64;
  std::string GameGUID;    // without braces
  std::string GameInfo;    // for packaged apps the package family name
  std::string SourceExId;  // the game's id at its source, for Steam the app id
  std::string LaunchUrl;
  std::string RunningExe;  // relative to an install folder
  int32_t SourceKind = kSourceNone;
};

using GameList = std::vector<GameSignature>;

}  // namespace tarnwick
