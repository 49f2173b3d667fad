// Edge, for the system's rules on paths and letter case.
#include "host/capture/asked_places.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <tuple>

#include "common/wide_text.h"
#include "foundation/conversions.h"

namespace tarnwick::host {
namespace {

constexpr char kMachineHive[] = "HKEY_LOCAL_MACHINE";
constexpr const char* kHives[] = {kMachineHive, "HKEY_CURRENT_USER", "HKEY_USERS", "HKEY_CLASSES_ROOT"};
constexpr wchar_t kSoftware[] = L"software";
constexpr wchar_t kWow[] = L"software\\wow6432node";

// The text is the folder or lies below it. The folder is in lower case.
bool IsBelow(const std::wstring& lower, const std::wstring& folder) {
  return lower.starts_with(folder) && (lower.size() == folder.size() || lower[folder.size()] == L'\\');
}

// The process is a 64-bit one, whose native view is the 64-bit one.
RegistryView ViewOfSoftware(RegistryView view) {
  return view == RegistryView::kNative && sizeof(void*) == 8 ? RegistryView::k64 : view;
}

void Normalise(KeyPlace& place) {
  const std::wstring lower = LowerText(place.subkey);
  if (place.hive != kMachineHive || !IsBelow(lower, kSoftware)) {
    place.view = RegistryView::kNative;
    return;
  }
  place.view = ViewOfSoftware(place.view);
  if (!IsBelow(lower, kWow)) return;
  place.subkey.erase(std::size(kSoftware) - 1, std::size(kWow) - std::size(kSoftware));
  place.view = RegistryView::k32;
}

std::wstring Trimmed(std::wstring key) {
  while (!key.empty() && key.back() == L'\\') key.pop_back();
  return key;
}

AskedKey& KeyAt(AskedPlaces& places, const KeyPlace& place) {
  const auto [found, fresh] = places.keys.try_emplace(place);
  if (fresh || found->first.subkey <= place.subkey) return found->second;
  // Whichever thread asked first, the same spelling stays.
  auto node = places.keys.extract(found);
  node.key().subkey = place.subkey;
  return places.keys.insert(std::move(node)).position->second;
}

void NoteKeyQuestion(AskedKey& key, const Question& question) {
  key.subkeys = key.subkeys || question.kind == QuestionKind::kListSubkeys;
  key.allValues = key.allValues || question.kind == QuestionKind::kListValues;
  if (question.kind != QuestionKind::kReadValue) return;
  for (const std::wstring& name : Readings(question.detail)) key.values.insert(name);
}

void AddKey(AskedPlaces& places, const Heard& heard) {
  bool meant = true;
  for (const std::wstring& text : Readings(heard.question.subject)) {
    if (const std::optional<KeyPlace> place = PlaceOfKey(text, heard.question.view)) {
      AskedKey& key = KeyAt(places, *place);
      NoteKeyQuestion(key, heard.question);
      key.meant = key.meant || meant;
    }
    meant = false;
  }
}

AskedPath* PathAt(AskedPlaces& places, const std::wstring& text) {
  const std::wstring path = FullDrivePath(text);
  if (path.empty()) return nullptr;
  const auto asked = places.paths.try_emplace(LowerText(path)).first;
  if (asked->second.path.empty() || path < asked->second.path) asked->second.path = path;
  return &asked->second;
}

void NotePathQuestion(AskedPath& path, const Heard& heard) {
  const QuestionKind kind = heard.question.kind;
  path.read = path.read || kind == QuestionKind::kReadTextFile || kind == QuestionKind::kReadBinaryFile;
  path.writeTime = path.writeTime || kind == QuestionKind::kWriteTime;
  if (kind != QuestionKind::kListFolder) return;
  path.listed = true;
  path.refused = path.refused || !heard.answer.given;
}

// What a list of a folder told: a path on each line or, where icons were searched for, a name and its kind
// behind a tab.
void AddListed(AskedPlaces& places, const Heard& heard) {
  const std::string& lines = heard.answer.text;
  size_t begin = 0;
  for (size_t end; (end = lines.find('\n', begin)) != std::string::npos; begin = end + 1) {
    const std::string line = lines.substr(begin, end - begin);
    const size_t tab = line.find('\t');
    const bool named = tab != std::string::npos;
    PathAt(places, Utf8ToWide(named ? heard.question.subject + '\\' + line.substr(0, tab) : line));
  }
}

void AddPathQuestion(AskedPlaces& places, const Heard& heard) {
  bool meant = true;
  for (const std::wstring& text : Readings(heard.question.subject)) {
    if (AskedPath* const path = PathAt(places, text)) {
      NotePathQuestion(*path, heard);
      path->meant = path->meant || meant;
    }
    meant = false;
  }
  if (heard.question.kind == QuestionKind::kListFolder) AddListed(places, heard);
}

std::string UpperName(const std::string& name) {
  std::wstring upper = common::Wide(name, common::Malformed::kReplaced);
  CharUpperBuffW(upper.data(), static_cast<DWORD>(upper.size()));
  return common::Narrow(upper);
}

void AddVariables(AskedPlaces& places, const std::string& text) {
  for (size_t begin = text.find('%'); begin != std::string::npos;) {
    const size_t end = text.find('%', begin + 1);
    if (end == std::string::npos) return;
    const std::string name = text.substr(begin + 1, end - begin - 1);
    if (!name.empty() && name.find('\\') == std::string::npos) places.variables.insert(UpperName(name));
    begin = end;
  }
}

void AddOne(AskedPlaces& places, const Heard& heard) {
  const Question& question = heard.question;
  switch (question.kind) {
    case QuestionKind::kOpenKey:
    case QuestionKind::kReadValue:
    case QuestionKind::kListSubkeys:
    case QuestionKind::kListValues:
      return AddKey(places, heard);
    case QuestionKind::kKnownFolder:
      if (heard.answer.given) places.knownFolders[question.subject] = heard.answer.text;
      return;
    case QuestionKind::kEnvironment:
      return AddVariables(places, '%' + question.subject + '%');
    case QuestionKind::kExpandText:
      return AddVariables(places, question.subject);
    case QuestionKind::kDriveType:
    case QuestionKind::kDrives:
    case QuestionKind::kProcess:
    case QuestionKind::kFullPath:
      return;
    default:
      return AddPathQuestion(places, heard);
  }
}

bool IsUtf8(const std::string& text) {
  return common::Narrow(common::Wide(text, common::Malformed::kReplaced)) == text;
}

bool BeginsWithDrive(const std::wstring& path) {
  const wchar_t letter = path.empty() ? L'\0' : static_cast<wchar_t>(path[0] | 0x20);
  return path.size() >= 3 && letter >= L'a' && letter <= L'z' && path[1] == L':' && path[2] == L'\\';
}

}  // namespace

bool KeyOrder::operator()(const KeyPlace& a, const KeyPlace& b) const {
  return std::make_tuple(a.hive, LowerText(a.subkey), a.view) <
         std::make_tuple(b.hive, LowerText(b.subkey), b.view);
}

void AddPlaces(AskedPlaces& places, const std::vector<Heard>& heard) {
  for (const Heard& one : heard) AddOne(places, one);
}

void AddPath(AskedPlaces& places, const std::wstring& path) { PathAt(places, path); }

std::vector<std::wstring> Readings(const std::string& subject) {
  std::vector<std::wstring> readings;
  if (IsUtf8(subject)) readings.push_back(common::Wide(subject));
  const std::wstring ansi = AnsiToWide(subject);
  if (readings.empty() || ansi != readings.front()) readings.push_back(ansi);
  return readings;
}

std::optional<KeyPlace> PlaceOfKey(const std::wstring& text, RegistryView view) {
  const size_t end = std::min(text.find(L'\\'), text.size());
  const std::string hive = common::Narrow(text.substr(0, end));
  if (std::ranges::find(kHives, hive) == std::end(kHives)) return std::nullopt;
  KeyPlace place{hive, Trimmed(text.substr(std::min(end + 1, text.size()))), view};
  Normalise(place);
  return place;
}

std::wstring FullDrivePath(const std::wstring& text) {
  std::wstring path = text;
  std::ranges::replace(path, L'/', L'\\');
  if (!BeginsWithDrive(path)) return {};
  std::vector<wchar_t> full(32768);
  const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  path.assign(full.data(), length < full.size() ? length : 0);
  if (!BeginsWithDrive(path)) return {};
  path[0] = static_cast<wchar_t>(path[0] & ~0x20);
  while (path.size() > 3 && path.back() == L'\\') path.pop_back();
  return path;
}

std::wstring LowerText(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

}  // namespace tarnwick::host
