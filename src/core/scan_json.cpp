// The JSON text of a scan, written by hand as a wide text and converted as a whole.
#include "core/scan_json.h"

#include "foundation/conversions.h"
#include "foundation/text.h"

namespace tarnwick {
namespace {

constexpr size_t kReservePerResult = 512;  // a hint: an icon is usually longer

void AppendResult(std::wstring& json, const ScanResult& result, const std::string& icon) {
  json += L"{\"name\":\"";
  AppendJsonEscaped(json, Utf8ToWide(result.name));
  json += L"\",\"loc\":\"";
  AppendJsonEscaped(json, NormalizeLocPath(Utf8ToWide(result.exePath)));
  json += L"\",\"icon\":\"";
  AppendJsonEscaped(json, Utf8ToWide(icon));
  json += L"\",\"launchUrl\":\"";
  AppendJsonEscaped(json, Utf8ToWide(result.launchUrl));
  json += L"\",\"exeName\":\"";
  AppendJsonEscaped(json, Utf8ToWide(ExeFileName(result.exePath)));
  json += L"\"}";
}

}  // namespace

// Kept: one backslash anywhere makes slashes part of the name.
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
