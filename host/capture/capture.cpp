// Edge: runs the library with the observer on, and hands on what was heard.
#include "host/capture/capture.h"

#include <fmt/format.h>

#include "common/wide_text.h"
#include "core/result_icons.h"
#include "foundation/locks.h"
#include "foundation/machine/known_folders.h"
#include "host/capture/applications.h"
#include "host/capture/private_copy.h"
#include "host/catalogue_file.h"
#include "host/presentation.h"
#include "inventory/app_cache.h"
#include "inventory/app_queries.h"

namespace tarnwick::host {
namespace {

constexpr KnownFolder kKnownFolders[] = {KnownFolder::kRoamingData, KnownFolder::kLocalData,
                                         KnownFolder::kCommonData, KnownFolder::kProgramFiles,
                                         KnownFolder::kProgramFilesX86};

// Both lists, since they take the executable of an application from different texts.
void ListApplications(const std::vector<UninstallEntry>& entries) {
  const CriticalSectionScope api(g_apiLock);
  const CriticalSectionScope cache(g_cacheLock);
  RefreshCacheNoLock();
  std::vector<AppRecord> records = KeptRecords(entries);
  AppsListJson(records, nullptr);
  AppsPageJson(records, 1, static_cast<int32_t>(records.size()), nullptr);
  for (AppRecord& record : records) ResolveInstallLocation(record);
}

// What the icons, the applications and the folders of the shell are asked for.
std::vector<Heard> HearTheRest(const ObservedScan& scan, const std::vector<UninstallEntry>& entries) {
  const common::HeardQuestions questions;
  for (const ScanResult& result : scan.unique) BuildScanResultIcon(result);
  ListApplications(entries);
  for (const KnownFolder folder : kKnownFolders) KnownFolderPath(folder);
  return questions.All();
}

AskedPlaces PlacesOf(const ObservedScan& scan, const std::vector<UninstallEntry>& entries) {
  AskedPlaces places;
  for (const StrategyRun& run : scan.runs) AddPlaces(places, run.heard);
  AddPlaces(places, HearTheRest(scan, entries));
  return places;
}

std::wstring FullPathOf(const std::string& path) {
  std::vector<wchar_t> full(32768);
  GetFullPathNameW(common::Wide(path).c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  return FullDrivePath(full.data());
}

// Its cipher has no names in it, only bytes that look like one now and then.
void SealCatalogue(MachineCopy& machine, const std::string& catalogue) {
  const bool enciphered = InspectCatalogue(catalogue).enciphered;
  for (DataCopy& data : machine.data) data.sealed = enciphered && data.path == machine.catalogue;
}

}  // namespace

Capture TakeCapture(const std::string& catalogue, bool withApplications, const LogSink& sink) {
  const ObservedScan scan = ObserveScan(catalogue, sink);
  std::vector<UninstallEntry> entries = ListUninstallEntries();
  KeepEntries(entries, scan, withApplications);
  AskedPlaces places = PlacesOf(scan, entries);
  const std::wstring cataloguePath = FullPathOf(catalogue);
  AddPath(places, cataloguePath);
  Capture capture{CopyMachine(places, cataloguePath, LeftOutTest(entries)), {}};
  SealCatalogue(capture.machine, catalogue);
  capture.counts.standIns = ReplacePrivateThings(capture.machine);
  capture.counts.leftOut = CountLeftOut(entries);
  return capture;
}

std::string CountsLine(const Capture& capture) {
  const MachineCopy& machine = capture.machine;
  std::string line = fmt::format("capture: {}, {}, {}, {}", Counted(machine.keys.size(), "key", "keys"),
                                 Counted(machine.data.size(), "file", "files"),
                                 Counted(machine.programs.size(), "executable", "executables"),
                                 Counted(capture.counts.standIns, "stand-in", "stand-ins"));
  if (capture.counts.leftOut > 0)
    line += fmt::format("; {} left out (--with-apps takes them)",
                        Counted(capture.counts.leftOut, "application", "applications"));
  return line;
}

}  // namespace tarnwick::host
