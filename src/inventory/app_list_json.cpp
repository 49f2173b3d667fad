// Edge: the inventory's JSON; file names are told by the shell's rule.
#include "inventory/app_list_json.h"

#include "foundation/machine/path_rules.h"
#include "foundation/text.h"

namespace tarnwick {

void AppendAppObject(std::wstring& json, const AppListEntry& entry) {
  const AppRecord& record = entry.record;
  if (json.back() != L'[') json += L',';
  json += L'{';
  AppendJsonMember(json, L"name", entry.name);
  AppendJsonMember(json, L"publisher", record.Publisher);
  AppendJsonMember(json, L"version", record.DisplayVersion);
  AppendJsonMember(json, L"loc", NormalizeLocPath(entry.executable));
  if (entry.withExeName) AppendJsonMember(json, L"exeName", FileNameOf(entry.executable));
  AppendJsonMember(json, L"date", record.InstallDate);
  json += L",\"sizeKB\":";
  json += std::to_wstring(record.EstimatedSize);
  json += L",\"icon\":\"";
  json += record.IconDataUri;
  json += L"\"}";
}

}  // namespace tarnwick
