// Edge: the names of this machine and its users are the system's to tell.
#include "host/capture/private_copy.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <tuple>

#include "common/wide_text.h"
#include "foundation/machine/folders.h"
#include "host/capture/private_things.h"
#include "host/machine_name.h"

namespace tarnwick::host {
namespace {

constexpr const char* kUserVariables[] = {"USERNAME"};
constexpr const char* kMachineVariables[] = {"COMPUTERNAME", "USERDOMAIN"};

std::string Variable(const char* name) {
  std::vector<wchar_t> text(32768);
  const DWORD length =
      GetEnvironmentVariableW(common::Wide(name).c_str(), text.data(), static_cast<DWORD>(text.size()));
  return length < text.size() ? common::Narrow(std::wstring(text.data(), length)) : std::string();
}

std::string LogonName() {
  std::vector<wchar_t> name(1024);
  auto length = static_cast<DWORD>(name.size());
  return GetUserNameW(name.data(), &length) ? common::Narrow(name.data()) : std::string();
}

std::string LastName(const std::string& path) { return path.substr(path.find_last_of("\\/") + 1); }

// The profiles of all users stand in one folder.
void AddProfiles(PrivateThings& things, const std::string& profile) {
  const size_t end = profile.find_last_of("\\/");
  if (end == std::string::npos) return;
  for (const FolderEntry& folder : ListFolders(profile.substr(0, end)).entries)
    AddPrivate(things, common::Narrow(folder.name), PrivateKind::kUser);
}

void AddNamesOfMachine(PrivateThings& things, const std::string& profile) {
  AddPrivate(things, LastName(profile), PrivateKind::kUser);
  AddPrivate(things, LogonName(), PrivateKind::kUser);
  AddProfiles(things, profile);
  for (const char* name : kUserVariables) AddPrivate(things, Variable(name), PrivateKind::kUser);
  for (const char* name : kMachineVariables) AddPrivate(things, Variable(name), PrivateKind::kMachine);
  for (const auto format : {ComputerNameNetBIOS, ComputerNameDnsHostname, ComputerNamePhysicalDnsHostname})
    AddPrivate(things, MachineName(format), PrivateKind::kMachine);
}

// What is done with each kind of content.
struct Visitor {
  void (*text)(PrivateThings& things, std::string& text);
  void (*bytes)(PrivateThings& things, std::string& bytes);
  void (*value)(PrivateThings& things, ValueCopy& value);
};

void FindInText(PrivateThings& things, std::string& text) { FindPrivate(things, text); }
void FindInBytes(PrivateThings& things, std::string& bytes) { FindPrivateInBytes(things, bytes); }

void FindInValue(PrivateThings& things, ValueCopy& value) {
  if (!NamesAnAccount(value.name)) return;
  if (value.text) AddPrivate(things, *value.text, PrivateKind::kAccount);
  if (value.number) AddPrivate(things, std::to_string(*value.number), PrivateKind::kAccount);
}

void ReplaceInValue(PrivateThings& things, ValueCopy& value) {
  if (value.number) value.number = ReplacedNumber(things, *value.number);
}

constexpr Visitor kFind = {FindInText, FindInBytes, FindInValue};
constexpr Visitor kReplace = {ReplacePrivate, ReplacePrivateInBytes, ReplaceInValue};

void VisitKey(KeyCopy& key, PrivateThings& things, const Visitor& visit) {
  visit.text(things, key.key);
  for (ValueCopy& value : key.values) {
    visit.value(things, value);
    visit.text(things, value.name);
    if (value.text) visit.text(things, *value.text);
    visit.bytes(things, value.bytes);
  }
}

void VisitProgram(ProgramCopy& program, PrivateThings& things, const Visitor& visit) {
  visit.text(things, program.path);
  for (VersionCopy& version : program.versions) {
    for (auto& [name, text] : version.values) visit.text(things, text);
  }
}

void VisitData(DataCopy& data, PrivateThings& things, const Visitor& visit) {
  visit.text(things, data.path);
  if (!data.sealed) visit.bytes(things, data.bytes);
}

void Visit(MachineCopy& copy, PrivateThings& things, const Visitor& visit) {
  visit.text(things, copy.catalogue);
  for (auto& [name, path] : copy.knownFolders) visit.text(things, path);
  for (auto& [name, text] : copy.environment) visit.text(things, text);
  for (KeyCopy& key : copy.keys) VisitKey(key, things, visit);
  for (FolderCopy& folder : copy.folders) visit.text(things, folder.path);
  for (DataCopy& data : copy.data) VisitData(data, things, visit);
  for (ProgramCopy& program : copy.programs) VisitProgram(program, things, visit);
  for (std::string& text : copy.missing) visit.text(things, text);
}

// A common word is no name that could be replaced everywhere; these texts are nothing but a name.
void ReplaceVariables(MachineCopy& copy, PrivateThings& things) {
  const auto replace = [&](const char* name) {
    const auto found = copy.environment.find(name);
    if (found != copy.environment.end()) ReplaceWhole(things, found->second);
  };
  for (const char* name : kUserVariables) replace(name);
  for (const char* name : kMachineVariables) replace(name);
}

std::wstring Lower(const std::string& text) {
  return LowerText(common::Wide(text, common::Malformed::kReplaced));
}

template <class Copies>
void SortByPath(Copies& copies) {
  std::ranges::sort(copies, {}, [](const auto& copy) { return Lower(copy.path); });
}

void Sort(MachineCopy& copy) {
  std::ranges::sort(copy.keys, {},
                    [](const KeyCopy& key) { return std::make_tuple(Lower(key.key), key.view); });
  for (KeyCopy& key : copy.keys)
    std::ranges::sort(key.values, {}, [](const ValueCopy& value) { return Lower(value.name); });
  SortByPath(copy.folders);
  SortByPath(copy.data);
  SortByPath(copy.programs);
  std::ranges::sort(copy.missing, {}, Lower);
  const auto same = std::ranges::unique(copy.missing);
  copy.missing.erase(same.begin(), same.end());
}

}  // namespace

size_t ReplacePrivateThings(MachineCopy& copy) {
  const std::string profile = Variable("USERPROFILE");
  PrivateThings things;
  AddNamesOfMachine(things, profile);
  Visit(copy, things, kFind);
  GiveOutStandIns(things, LastName(profile));
  ReplaceVariables(copy, things);
  Visit(copy, things, kReplace);
  Sort(copy);
  return static_cast<size_t>(
      std::ranges::count_if(things.byText, [](const auto& entry) { return entry.second.replaced; }));
}

}  // namespace tarnwick::host
