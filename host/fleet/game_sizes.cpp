#include "host/fleet/game_sizes.h"

#include "foundation/text.h"
#include "host/input_file.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace tarnwick::host {
namespace {

constexpr std::string_view kSteamRun = "steam://run/";
constexpr std::string_view kCommon = "\\steamapps\\common\\";
constexpr std::string_view kSteamApps = "\\steamapps\\";
constexpr std::string_view kSizeKey = "\"sizeondisk\"";

bool IsNumber(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<uint64_t> SizeKb(const std::string& manifestPath) {
  if (manifestPath.empty()) return std::nullopt;
  return SteamSizeKb(ReadInputFile(manifestPath).bytes);
}

}  // namespace

std::string SteamManifestPath(const std::string& loc, const std::string& launchUrl) {
  if (!launchUrl.starts_with(kSteamRun)) return {};
  const std::string id = launchUrl.substr(kSteamRun.size());
  const size_t common = ToLowerBytes(loc).find(kCommon);
  if (!IsNumber(id) || common == std::string::npos) return {};
  return loc.substr(0, common + kSteamApps.size()) + "appmanifest_" + id + ".acf";
}

std::optional<uint64_t> SteamSizeKb(const std::string& manifest) {
  const size_t key = ToLowerBytes(manifest).find(kSizeKey);
  if (key == std::string::npos) return std::nullopt;
  const size_t begin = manifest.find('"', key + kSizeKey.size());
  if (begin == std::string::npos) return std::nullopt;
  uint64_t bytes = 0;
  const char* end = manifest.data() + manifest.size();
  const auto [stop, error] = std::from_chars(manifest.data() + begin + 1, end, bytes);
  if (error != std::errc() || stop == end || *stop != '"') return std::nullopt;
  return bytes / 1024 + (bytes % 1024 == 0 ? 0 : 1);
}

void AddSizes(Rows& games) {
  for (Rows& game : games) {
    const std::optional<uint64_t> size =
        SizeKb(SteamManifestPath(game.value("loc", ""), game.value("launchUrl", "")));
    game["sizeKB"] = size ? Rows(*size) : Rows(nullptr);
  }
}

}  // namespace tarnwick::host
