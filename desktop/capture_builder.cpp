// Makes a captured machine, in an order in which nothing is in the way of what follows.
#include "desktop/capture.h"
#include "desktop/machine_settings.h"

namespace tarnwick::desktop {
namespace {

void ApplyModified(Desktop& desktop, const std::string& path, const std::optional<int64_t>& modified) {
  if (modified) desktop.ModifiedTime(path, *modified);
}

void MakeProgram(Desktop& desktop, const CapturedProgram& program) {
  if (program.isIconFile)
    desktop.IconFile(program.path, program.options.icons.front());
  else
    desktop.Executable(program.path, program.options);
  ApplyModified(desktop, program.path, program.modified);
}

void MakeFiles(Desktop& desktop, const Capture& capture) {
  for (const CapturedFolder& folder : capture.folders) desktop.Folder(folder.path);
  for (const CapturedFile& file : capture.files) {
    desktop.PaddedFile(file.path, file.bytes, file.size);
    ApplyModified(desktop, file.path, file.modified);
  }
  for (const CapturedProgram& program : capture.programs) MakeProgram(desktop, program);
}

void MakeKeys(Desktop& desktop, const Capture& capture) {
  for (const CapturedKey& key : capture.keys) {
    desktop.Key(key.key, key.view);
    for (const CapturedValue& value : key.values)
      desktop.RawValue(key.key, value.name, value.type, value.bytes, key.view);
  }
}

// Last: what is made in a folder changes its time, and a held one lets nobody in.
void FinishFolders(Desktop& desktop, const Capture& capture) {
  for (const CapturedFolder& folder : capture.folders) ApplyModified(desktop, folder.path, folder.modified);
  for (const CapturedFolder& folder : capture.folders)
    if (folder.refused) desktop.HoldFolder(folder.path);
}

}  // namespace

void BuildCapture(Desktop& desktop, const Capture& capture) {
  MakeFiles(desktop, capture);
  MakeKeys(desktop, capture);
  for (const auto& [name, path] : capture.knownFolders) SetKnownFolder(desktop, name, path);
  for (const auto& [name, text] : capture.environment) SetVariable(desktop, name, text);
  FinishFolders(desktop, capture);
}

}  // namespace tarnwick::desktop
