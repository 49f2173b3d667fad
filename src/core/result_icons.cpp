// Edge: hands a found game to the inventory's icon code as if it were an installed application.
#include "core/result_icons.h"

#include "foundation/com_scope.h"
#include "foundation/conversions.h"
#include "foundation/machine/path_rules.h"
#include "inventory/icon_uris.h"

namespace tarnwick {
namespace {

constexpr int kFolderUnits = 260;

AppRecord RecordOf(const ScanResult& result) {
  const std::wstring exe = Utf8ToWide(result.exePath);
  AppRecord record;
  record.DisplayName = Utf8ToWide(result.name);
  record.DisplayIcon = Utf8ToWide(result.displayIcon);
  if (record.DisplayIcon.empty()) record.DisplayIcon = exe;
  if (!exe.empty()) record.InstallLocation = FolderOf(exe, kFolderUnits);
  return record;
}

}  // namespace

std::string BuildScanResultIcon(const ScanResult& result) {
  const AppRecord record = RecordOf(result);
  const ComScope com;
  return AppIconUri(record);
}

}  // namespace tarnwick
