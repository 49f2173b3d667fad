#pragma once
// What stands at the places that the library asked for, read anew as it is: types and bytes of values, bytes
// of data files; of programs the size, version texts and icons, never the code.

#include "host/capture/asked_places.h"
#include "host/capture/icon_images.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::host {

inline constexpr uint64_t kMostDataBytes = uint64_t{8} << 20;  // of one data file; the rest is cut

inline constexpr uint64_t kMostValueBytes = uint64_t{1}
                                            << 20;  // longer values are left out: nobody reads one

struct ValueCopy {
  std::string name;
  uint32_t type = 0;
  std::optional<std::string> text;  // of types 1 and 2, whose bytes are this text and one terminator
  std::optional<uint32_t> number;   // of type 4 and four bytes
  std::string bytes;                // of everything else
};

struct KeyCopy {
  std::string key;
  RegistryView view = RegistryView::kNative;
  std::vector<ValueCopy> values;
};

struct FolderCopy {
  std::string path;
  bool refused = false;  // can't be listed
};

struct DataCopy {
  std::string path;
  std::string bytes;
  bool cut = false;  // `bytes` is only its beginning, or nothing where nobody read the file
  uint64_t size = 0;
  std::optional<int64_t> modified;  // seconds since 1970, where the time was asked
  bool sealed = false;              // enciphered: nothing in it is replaced
};

struct VersionCopy {
  uint16_t language = 0;
  uint16_t codePage = 0;
  std::map<std::string, std::string> values;
};

struct ProgramCopy {
  std::string path;
  uint64_t size = 0;
  bool iconFile = false;
  std::vector<VersionCopy> versions;
  IconGroups icons;
  std::optional<int64_t> modified;
};

struct MachineCopy {
  std::string catalogue;  // the file's full path
  std::map<std::string, std::string> knownFolders;
  std::map<std::string, std::string> environment;
  std::vector<std::string> drives;
  std::vector<KeyCopy> keys;
  std::vector<FolderCopy> folders;
  std::vector<DataCopy> data;
  std::vector<ProgramCopy> programs;
  std::vector<std::string> missing;
};

// True for a key that the capture passes over.
using KeyTest = std::function<bool(const KeyPlace& place)>;

MachineCopy CopyMachine(const AskedPlaces& places, const std::wstring& catalogue, const KeyTest& leftOut);

// The direct subkeys; none for a key that isn't there.
std::vector<std::wstring> SubkeysOf(const KeyPlace& place);

// A value as text, cut at its first zero; empty if it is none.
std::wstring TextValueOf(const KeyPlace& place, const wchar_t* name);

}  // namespace tarnwick::host
