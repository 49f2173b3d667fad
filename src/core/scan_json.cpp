// The JSON text of a scan, written by hand as a wide text and converted as a whole.
#include "core/scan_json.h"

#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tarnwick {
namespace {

constexpr size_t kReservePerResult = 512;  // a hint: an icon is usually longer

void AppendResult(std::wstring& json, const ScanResult& result, const std::string& icon) {
  json += L'{';
  AppendJsonMember(json, L"name", Utf8ToWide(result.name));
  AppendJsonMember(json, L"loc", NormalizeLocPath(Utf8ToWide(result.exePath)));
  AppendJsonMember(json, L"icon", Utf8ToWide(icon));
  AppendJsonMember(json, L"launchUrl", Utf8ToWide(result.launchUrl));
  AppendJsonMember(json, L"exeName", Utf8ToWide(ExeFileName(result.exePath)));
  json += L'}';
}

}  // namespace

// Kept: one backslash anywhere makes slashes part of the name (docs/decisions/scan-answer.md).
std::string ExeFileName(const std::string& exePath) {
  const size_t backslash = exePath.rfind('\\');
  const size_t separator = backslash != std::string::npos ? backslash : exePath.rfind('/');
  return separator == std::string::npos ? exePath : exePath.substr(separator + 1);
}

std::string WriteScanJson(const ScanResults& results, const IconBuilder& buildIcon) {
  std::wstring json;
  json.reserve(results.size() * kReservePerResult);
  json += L"[";
  for (const ScanResult& result : results) {
    if (&result != &results.front()) json += L",";
    AppendResult(json, result, buildIcon(result));
  }
  json += L"]";
  return WideToUtf8(json);
}

}  // namespace tarnwick
