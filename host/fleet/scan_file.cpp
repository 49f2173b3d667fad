#include "host/fleet/scan_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "host/catalogue/check_encoding.h"
#include "host/catalogue/record_file.h"
#include "host/fleet/lines.h"
#include "host/input_file.h"

namespace tarnwick::host {
namespace {

using Json = nlohmann::json;

constexpr std::string_view kWhite = " \t\r\n";

[[noreturn]] void Refuse(const std::string& place, const std::string& why) {
  throw std::runtime_error(place + ": " + why);
}

// "old.json:2:17", the column in characters.
std::string PlaceOf(const std::string& path, std::string_view before) {
  const size_t lineBegin = before.rfind('\n') + 1;  // npos + 1 is 0
  const auto isCharacter = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const auto column =
      std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineBegin), before.end(), isCharacter) + 1;
  return fmt::format("{}:{}:{}", path, line, column);
}

// A part of `text`, from `begin` to `end`, as JSON.
Json Parsed(const std::string& path, std::string_view text, size_t begin, size_t end) {
  try {
    return Json::parse(text.begin() + static_cast<std::ptrdiff_t>(begin),
                       text.begin() + static_cast<std::ptrdiff_t>(end));
  } catch (const Json::parse_error& error) {
    const size_t at = begin + std::max<size_t>(error.byte, 1) - 1;
    if (at >= end) Refuse(PlaceOf(path, text.substr(0, end)), "the text ends too early; it was cut");
    Refuse(PlaceOf(path, text.substr(0, at)), "not valid JSON");
  }
}

std::string Text(const Json& object, const char* member, const std::string& place) {
  const auto found = object.find(member);
  if (found == object.end()) Refuse(place, fmt::format("no game of a scan: it has no \"{}\"", member));
  if (!found->is_string()) Refuse(place, fmt::format("\"{}\" is no text", member));
  return found->get<std::string>();
}

ScannedGame GameOf(const Json& object, const std::string& place) {
  if (!object.is_object()) Refuse(place, "no game of a scan: it is no object");
  ScannedGame game;
  game.name = Text(object, "name", place);
  game.loc = Text(object, "loc", place);
  game.launchUrl = Text(object, "launchUrl", place);
  if (object.contains("launcher")) game.launcher = Text(object, "launcher", place);
  return game;
}

ScanFile FromArray(const std::string& path, std::string_view text) {
  ScanFile scan;
  for (const Json& item : Parsed(path, text, 0, text.size()))
    scan.games.push_back(GameOf(item, fmt::format("{}: item {}", path, scan.games.size() + 1)));
  return scan;
}

struct LinesSoFar {
  ScanFile scan;
  bool any = false;  // a line that tells of its origin
  bool ended = false;
};

// All lines are of one run, and none stands behind its end.
void CheckOrigin(LinesSoFar& lines, const Json& line, const std::string& place) {
  const auto form = line.find("form");
  if (form == line.end() || *form != kLineForm)
    Refuse(place, "a form of line that this program doesn't know");
  const std::string time = Text(line, "time", place);
  const std::string machine = Text(line, "machine", place);
  if (lines.ended || (lines.any && (time != lines.scan.time || machine != lines.scan.machine)))
    Refuse(place, "a second list begins here; compare one scan with one");
  if (!lines.any && !lines.scan.games.empty()) Refuse(place, "a line of another form than those before");
  lines.any = true;
  lines.scan.time = time;
  lines.scan.machine = machine;
}

void TakeEnd(LinesSoFar& lines, const Json& line, const std::string& place) {
  const auto count = line.find("lines");
  if (count == line.end() || *count != lines.scan.games.size())
    Refuse(place, fmt::format("the end tells of {} games, but {} stand before it; some were lost",
                              count == line.end() ? "no" : count->dump(), lines.scan.games.size()));
  lines.ended = true;
}

void TakeLine(LinesSoFar& lines, const Json& line, const std::string& place) {
  if (!line.is_object()) Refuse(place, "no line of a scan: it is no object");
  if (!line.contains("kind")) {
    if (lines.any) Refuse(place, "a line of another form than those before");
    lines.scan.games.push_back(GameOf(line, place));
    return;
  }
  CheckOrigin(lines, line, place);
  const std::string kind = Text(line, "kind", place);
  if (kind == kGameLines.end) return TakeEnd(lines, line, place);
  if (kind != kGameLines.row) Refuse(place, "no line of a scan: its kind is \"" + kind + "\"");
  lines.scan.games.push_back(GameOf(line, place));
}

ScanFile FromLines(const std::string& path, std::string_view text) {
  LinesSoFar lines;
  size_t number = 1;
  for (size_t begin = 0; begin < text.size(); ++number) {
    const size_t end = std::min(text.find('\n', begin), text.size());
    const std::string place = fmt::format("{}:{}", path, number);
    if (text.substr(begin, end - begin).find_first_not_of(kWhite) != std::string_view::npos)
      TakeLine(lines, Parsed(path, text, begin, end), place);
    begin = end + 1;
  }
  if (lines.any && !lines.ended)
    Refuse(PlaceOf(path, text), "the line of the scan's end is missing; it was cut");
  return lines.scan;
}

}  // namespace

ScanFile ParseScan(const std::string& path, std::string_view text) {
  if (IsUtf16(text)) Refuse(path, "is UTF-16, as PowerShell's > writes it; write scans with -o FILE");
  if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
  const size_t first = text.find_first_not_of(kWhite);
  if (first == std::string_view::npos) Refuse(path, "is empty; a scan without games is [] or one line");
  if (text[first] == '[') return FromArray(path, text);
  if (text[first] == '{') return FromLines(path, text);
  Refuse(PlaceOf(path, text.substr(0, first)), "not a scan as --format json or ndjson writes it");
}

ScanFile ReadScan(const std::string& path) {
  RefuseLargeFile(path);
  const InputFile input = ReadInputFile(path);
  if (input.fault != FileFault::kNone) throw std::runtime_error(ExplainFault(path, input.fault));
  return ParseScan(path, input.bytes);
}

}  // namespace tarnwick::host
