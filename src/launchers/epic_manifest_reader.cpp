// Reader: Epic's manifests and list of installations. String values follow the strict rule, JsonFindString,
// as Battle.net's do; but doubled backslashes stay, where Battle.net's reader collapses them.
#include "launchers/epic_manifest_reader.h"

#include "launchers/json_text_reader.h"

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;

// The part of a download address between its last two slashes: the build's channel.
std::string SegmentBeforeLastSlash(const std::string& url) {
  const size_t last = url.rfind('/');
  if (last == 0 || last == kNone) return {};
  const size_t before = url.rfind('/', last - 1);
  return before == kNone ? std::string() : url.substr(before + 1, last - before - 1);
}

std::string BaseUrlSegment(std::string_view text, const std::string& appName) {
  const std::vector<std::string> urls = JsonFindStringArray(text, "BaseURLs");
  const std::string segment = urls.empty() ? std::string() : SegmentBeforeLastSlash(urls.front());
  return segment.empty() ? appName : segment;
}

}  // namespace

EpicManifestEntry ReadEpicManifest(std::string_view text) {
  EpicManifestEntry entry;
  entry.AppName = JsonFindString(text, "AppName");
  entry.MainGameAppName = JsonFindString(text, "MainGameAppName");
  entry.DisplayName = JsonFindString(text, "DisplayName");
  entry.InstallLocation = JsonFindString(text, "InstallLocation");
  entry.LaunchExecutable = JsonFindString(text, "LaunchExecutable");
  if (entry.LaunchExecutable.empty()) entry.LaunchExecutable = JsonFindString(text, "Executable");
  entry.AppCategories = JsonFindStringArray(text, "AppCategories");
  entry.bIsIncompleteInstall = JsonFindBool(text, "bIsIncompleteInstall");
  entry.baseUrlSegment = BaseUrlSegment(text, entry.AppName);
  return entry;
}

EpicManifestEntry ReadLauncherInstalledObject(std::string_view object) {
  EpicManifestEntry entry;
  entry.AppName = JsonFindString(object, "AppName");
  entry.InstallLocation = JsonFindString(object, "InstallLocation");
  entry.AppVersion = JsonFindString(object, "AppVersion");
  entry.MainGameAppName = entry.AppName;
  entry.DisplayName = entry.AppName;
  return entry;
}

}  // namespace tarnwick
