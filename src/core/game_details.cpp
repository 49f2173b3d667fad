// Edge: the details of one executable, from the file itself.
#include "core/game_details.h"

#include "core/version_names.h"
#include "foundation/com_scope.h"
#include "foundation/conversions.h"
#include "foundation/export_guard.h"
#include "foundation/machine/path_rules.h"
#include "foundation/machine/paths.h"
#include "foundation/result_buffer.h"
#include "foundation/text.h"
#include "inventory/icon_uris.h"

#include <string>

namespace tarnwick {
namespace {

std::wstring Stem(const std::wstring& fileName) { return fileName.substr(0, fileName.rfind(L'.')); }

std::string DetailsJson(const std::wstring& path, const FileIconBuilder& buildIcon) {
  const std::wstring file_name = FileNameOf(path);
  std::wstring name = VersionName(path);
  if (name.empty()) name = Stem(file_name);
  std::wstring json = L"{";
  AppendJsonMember(json, L"name", name);
  AppendJsonMember(json, L"ico", Utf8ToWide(buildIcon(path)));
  AppendJsonMember(json, L"exepath", NormalizeLocPath(path));
  AppendJsonMember(json, L"exe", file_name);
  json += L'}';
  return WideToUtf8(json);
}

// The existing file that is meant, or an empty path.
std::wstring FindFile(const char* path) {
  std::wstring wide = Utf8ToWide(path != nullptr ? path : "");
  if (!ShellPathExists(wide)) wide = MendSecondColon(wide);
  return ShellPathExists(wide) ? wide : std::wstring();
}

}  // namespace

int WriteGameDetails(const char* path, char* buffer, int size, const FileIconBuilder& buildIcon) {
  static constexpr ExportMessages kMessages = {
      "CRITICAL ERROR in IA_GetGameDetailsByPathJson: ",
      "CRITICAL ERROR: Unknown exception in IA_GetGameDetailsByPathJson."};
  constexpr char kNothing[] = "{}";
  const ComScope com;
  int length = 0;
  const bool ended = RunCatching(kMessages, [&] {
    const std::wstring file = FindFile(path);
    length = file.empty() ? WriteEmptyResult(kNothing, buffer, size)
                          : WriteResult(DetailsJson(file, buildIcon), buffer, size);
  });
  return ended ? length : WriteEmptyResult(kNothing, buffer, size);
}

}  // namespace tarnwick
