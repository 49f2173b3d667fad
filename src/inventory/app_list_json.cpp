// Edge: the inventory's JSON; file names are told by the shell's rule.
#include "inventory/app_list_json.h"

#include "foundation/machine/path_rules.h"
#include "foundation/text.h"

namespace tarnwick {
namespace {

void AppendTextMember(std::wstring& json, const wchar_t* key, const std::wstring& text) {
  json += L'"';
  json += key;
  json += L"\":\"";
  AppendJsonEscaped(json, text);
  json += L"\",";
}

}  // namespace

void AppendAppObject(std::wstring& json, const AppListEntry& entry) {
  const AppRecord& record = entry.record;
  if (json.back() != L'[') json += L',';
  json += L'{';
  AppendTextMember(json, L"name", entry.name);
  AppendTextMember(json, L"publisher", record.Publisher);
  AppendTextMember(json, L"version", record.DisplayVersion);
  AppendTextMember(json, L"loc", NormalizeLocPath(entry.executable));
  if (entry.withExeName) AppendTextMember(json, L"exeName", FileNameOf(entry.executable));
  AppendTextMember(json, L"date", record.InstallDate);
  json += L"\"sizeKB\":";
  json += std::to_wstring(record.EstimatedSize);
  json += L",\"icon\":\"";
  json += record.IconDataUri;
  json += L"\"}";
}

}  // namespace tarnwick
