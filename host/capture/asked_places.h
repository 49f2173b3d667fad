#pragma once
// Where the library looked, out of the questions that it asked: what a capture has to show.

#include "common/heard_questions.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::host {

using common::Heard;

// A key as the registry has it: the path below SOFTWARE\WOW6432Node and the 32-bit view of what is below
// SOFTWARE are one place. The view is native outside of HKEY_LOCAL_MACHINE\SOFTWARE.
struct KeyPlace {
  std::string hive;     // the long name
  std::wstring subkey;  // as it was spelled
  RegistryView view = RegistryView::kNative;
};

// Hives and subkeys without regard to letter case, then views.
struct KeyOrder {
  bool operator()(const KeyPlace& a, const KeyPlace& b) const;
};

struct AskedKey {
  std::set<std::wstring> values;
  bool allValues = false;
  bool subkeys = false;
  bool meant = false;  // it was asked for by this name, which is not only another reading of the bytes
};

struct AskedPath {
  std::wstring path;   // full, with backslashes
  bool meant = false;  // as of AskedKey
  bool read = false;   // its contents
  bool listed = false;
  bool refused = false;  // the list came to nothing
  bool writeTime = false;
};

struct AskedPlaces {
  std::map<KeyPlace, AskedKey, KeyOrder> keys;
  std::map<std::wstring, AskedPath> paths;          // by the path in lower case
  std::map<std::string, std::string> knownFolders;  // by the machine room's names
  std::set<std::string> variables;                  // of the environment, in upper case
};

void AddPlaces(AskedPlaces& places, const std::vector<Heard>& heard);
void AddPath(AskedPlaces& places, const std::wstring& path);

// What a subject of a question can mean: its UTF-8 and, since the narrow calls take the same bytes as those of
// the code page, those letters too. One and the same for ASCII.
std::vector<std::wstring> Readings(const std::string& subject);

// Nothing for a text that isn't a key of a known hive.
std::optional<KeyPlace> PlaceOfKey(const std::wstring& text, RegistryView view);

// A full path on a drive, in its one spelling; empty for every other text.
std::wstring FullDrivePath(const std::wstring& text);

std::wstring LowerText(std::wstring text);

}  // namespace tarnwick::host
