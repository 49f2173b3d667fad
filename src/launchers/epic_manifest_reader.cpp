// Reader: Epic's manifests and list of installations. String values follow the strict rule, JsonFindString,
// as Battle.net's do; but doubled backslashes stay, where Battle.net's reader collapses them.
#include "launchers/epic_manifest_reader.h"

#include "launchers/json_text_reader.h"

#include <cstdint>
#include <optional>

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

// As JsonFindString up to the value's start.
bool JsonFindBool(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  return colon != kNone && text.substr(JsonSkipBlanks(text, colon + 1)).starts_with("true");
}

// As JsonFindString up to the value's start, and for each element from its opening quote on.
std::vector<std::string> JsonFindStringArray(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  if (colon == kNone) return {};
  const size_t open = JsonSkipBlanks(text, colon + 1);
  if (open == text.size() || text[open] != '[') return {};
  const size_t close = text.find(']', open + 1);
  if (close == kNone) return {};
  const std::string_view inner = text.substr(open + 1, close - open - 1);
  std::vector<std::string> elements;
  // Kept: the first step takes double quotes for separators too, the opening quote among them, so the quote
  // asked for behind it is never there and no element is ever cut out. No category filters a game, and none
  // must.
  for (size_t at = 0; (at = inner.find_first_not_of(" \t\n\r,\"", at)) != kNone;) {
    at = inner.find_first_not_of(" \t\n\r,", at);
    if (at == kNone || inner[at] != '"') break;
    const size_t end = JsonFindClosingQuote(inner, at + 1);
    if (end == kNone) break;
    elements.emplace_back(inner.substr(at + 1, end - at - 1));
    at = end + 1;
  }
  return elements;
}

// Unlike its sisters it doesn't ask what stands between the colon and the bracket.
std::vector<std::string_view> JsonFindObjectArray(std::string_view text, std::string_view key) {
  const size_t colon = JsonFindColon(text, key);
  const size_t open = colon == kNone ? kNone : text.find('[', colon);
  if (open == kNone) return {};
  std::vector<std::string_view> objects;
  std::optional<size_t> start;
  int64_t depth =
      0;  // below 0 where braces close that never opened: as many must open again before an object begins
  for (size_t at = open + 1; at < text.size(); ++at) {
    const char byte = text[at];
    if (byte == '{') {
      if (depth++ == 0) start = at;
    } else if (byte == '}') {
      if (depth-- == 1 && start) {
        objects.push_back(text.substr(*start, at + 1 - *start));
        start.reset();
      }
    } else if (byte == ']' && depth == 0) {
      break;
    }
  }
  return objects;
}

}  // namespace tarnwick
