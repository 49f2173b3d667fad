// Edge: puts the copy together.
#include "host/capture/machine_copy.h"

#include <algorithm>
#include <iterator>

#include "common/wide_text.h"
#include "foundation/com_scope.h"
#include "foundation/windows_api.h"
#include "host/capture/file_copy.h"
#include "host/capture/registry_copy.h"
#include "host/capture/system_places.h"

namespace tarnwick::host {
namespace {

void CopyEnvironment(const AskedPlaces& places, MachineCopy& copy) {
  std::vector<wchar_t> text(32768);
  for (const std::string& name : places.variables) {
    const DWORD length =
        GetEnvironmentVariableW(common::Wide(name).c_str(), text.data(), static_cast<DWORD>(text.size()));
    if (length > 0 && length < text.size())
      copy.environment[name] = common::Narrow(std::wstring(text.data(), length));
  }
}

// Two spellings of one path, such as its short one, are one path here.
std::map<std::wstring, AskedPath> SpelledPaths(const AskedPlaces& places) {
  std::map<std::wstring, AskedPath> paths;
  for (const auto& [lower, asked] : places.paths) {
    const std::wstring spelled = SpelledPath(asked.path);
    AskedPath& path = paths[LowerText(spelled)];
    path.path = spelled;
    path.meant = path.meant || asked.meant;
    path.read = path.read || asked.read;
    path.listed = path.listed || asked.listed;
    path.refused = path.refused || asked.refused;
    path.writeTime = path.writeTime || asked.writeTime;
  }
  return paths;
}

// Those that something lies on. On another drive the library looked for nothing that is there.
void CopyDrives(MachineCopy& copy) {
  std::set<std::string> drives;
  const auto add = [&](const std::string& path) { drives.insert(path.substr(0, 3)); };
  for (const auto& [name, path] : copy.knownFolders) add(path);
  for (const FolderCopy& folder : copy.folders) add(folder.path);
  for (const DataCopy& data : copy.data) add(data.path);
  for (const ProgramCopy& program : copy.programs) add(program.path);
  copy.drives.assign(drives.begin(), drives.end());
}

}  // namespace

MachineCopy CopyMachine(const AskedPlaces& places, const std::wstring& catalogue, const KeyTest& leftOut) {
  const ComScope com;
  MachineCopy copy;
  copy.catalogue = common::Narrow(catalogue);
  copy.knownFolders = places.knownFolders;
  KeyCopies keys = CopyKeys(places, leftOut);
  copy.keys = std::move(keys.keys);
  copy.missing = std::move(keys.missing);
  for (const auto& [lower, asked] : SpelledPaths(places)) {
    if (IsSystemPath(lower)) continue;
    if (lower == LowerText(catalogue))
      CopyWholeFile(catalogue, copy);
    else
      CopyPath(asked, copy);
  }
  CopyEnvironment(places, copy);
  CopyDrives(copy);
  return copy;
}

}  // namespace tarnwick::host
