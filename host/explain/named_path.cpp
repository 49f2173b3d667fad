#include "host/explain/named_path.h"

#include "common/wide_text.h"
#include "foundation/text.h"

#include <windows.h>

#include <filesystem>
#include <system_error>

namespace tarnwick::host {

std::string ComparablePath(const std::string& path) {
  std::wstring wide = common::Wide(StripOuterQuotes(path), common::Malformed::kReplaced);
  // Texts of the registry have zeros at their end.
  wide.resize(wide.find_last_not_of(L'\0') + 1);
  wide = NormalizeLocPath(wide);
  CharLowerBuffW(wide.data(), static_cast<DWORD>(wide.size()));
  return TrimTrailingSeparators(common::Narrow(wide));
}

bool IsAtOrBelow(const std::string& path, const std::string& place) {
  if (place.empty() || !path.starts_with(place)) return false;
  return path.size() == place.size() || path[place.size()] == '\\';
}

std::string FullForm(const std::string& path) {
  std::error_code error;
  const std::filesystem::path full =
      std::filesystem::absolute(common::Wide(path, common::Malformed::kReplaced), error);
  return error ? path : common::Narrow(full.lexically_normal().make_preferred().wstring());
}

}  // namespace tarnwick::host
