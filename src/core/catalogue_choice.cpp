// Edge: asks the file system which catalogue there is.
#include "core/catalogue_choice.h"

#include "foundation/log.h"
#include "foundation/machine/paths.h"

namespace tarnwick {

std::wstring AskedCatalogue(const char* path, std::wstring (*convert)(const std::string&)) {
  std::wstring wide;
  try {
    wide = path == nullptr || *path == '\0' ? L"MasterGameList_decrypted.xml" : convert(path);
  } catch (...) {
    LogLine("ERROR: Exception during UTF-8 to WideChar conversion.");
  }
  return wide;
}

std::wstring ChooseCatalogue(const char* path) {
  constexpr wchar_t kFallback[] = L"MasterGameList.xml";
  const std::wstring asked = AskedCatalogue(path);
  if (ShellPathExists(asked) || !ShellPathExists(kFallback)) return asked;
  LogLine("Fallback to MasterGameList.xml");
  return kFallback;
}

}  // namespace tarnwick
