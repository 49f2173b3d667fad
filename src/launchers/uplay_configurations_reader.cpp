// Reader: the Ubisoft launcher's configurations, line by line. It isn't a YAML reader: indentation means
// nothing, and a line counts in whatever section it stands.
#include "launchers/uplay_configurations_reader.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;

struct ReadState {
  std::vector<UplayConfigRecord> records;
  UplayConfigRecord record;
  bool open = false;
  bool inOnline = false;
  bool inOffline = false;
};

std::string LineValue(std::string_view line) {
  std::string_view value = GetUplayLineValue(line);
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
    value = value.substr(1, value.size() - 2);
  return std::string(value);
}

// The newest entry of the active list, or null.
UplayExecutable* NewestEntry(ReadState& state) {
  if (!state.inOnline && !state.inOffline) return nullptr;
  auto& entries = state.inOnline ? state.record.onlineExecutables : state.record.offlineExecutables;
  return entries.empty() ? nullptr : &entries.back();
}

void SetName(ReadState& state, std::string_view line) { state.record.name = LineValue(line); }

void EnterOnline(ReadState& state, std::string_view) {
  state.inOnline = true;
  state.inOffline = false;
}

void EnterOffline(ReadState& state, std::string_view) {
  state.inOffline = true;
  state.inOnline = false;
}

void AppendExecutable(ReadState& state, std::string_view) {
  if (state.inOnline) state.record.onlineExecutables.emplace_back();
  if (state.inOffline) state.record.offlineExecutables.emplace_back();
}

void SetRelative(ReadState& state, std::string_view line) {
  if (UplayExecutable* entry = NewestEntry(state)) entry->relative = LineValue(line);
}

// Kept: the registry text stands in for a relative path until a line gives one
// (docs/decisions/launcher-texts.md).
void SetRegister(ReadState& state, std::string_view line) {
  UplayExecutable* entry = NewestEntry(state);
  if (entry == nullptr) return;
  if (entry->relative.empty()) entry->relative = LineValue(line);
  if (entry->register_.empty()) entry->register_ = LineValue(line);
}

void SetAppend(ReadState& state, std::string_view line) {
  if (UplayExecutable* entry = NewestEntry(state)) entry->append = LineValue(line);
}

// What a line of a record may be: the first row that fits decides.
struct LineRule {
  std::string_view start;
  bool wholeLine;
  void (*apply)(ReadState& state, std::string_view line);
};

constexpr LineRule kLineRules[] = {
    {"name:", false, SetName},          {"online:", true, EnterOnline},
    {"offline:", true, EnterOffline},   {"- path:", false, AppendExecutable},
    {"path:", false, AppendExecutable}, {"relative:", false, SetRelative},
    {"register:", false, SetRegister},  {"append:", false, SetAppend},
};

void Finish(ReadState& state) {
  if (state.open) FinishUplayRecord(state.records, std::exchange(state.record, {}));
  state.inOnline = state.inOffline = false;
}

void TakeLine(ReadState& state, std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  if (line == "root:") {
    Finish(state);
    state.open = true;
    return;
  }
  if (!state.open) return;
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  for (const LineRule& rule : kLineRules) {
    if (rule.wholeLine ? line != rule.start : !line.starts_with(rule.start)) continue;
    rule.apply(state, line);
    return;
  }
}

std::string FirstInstallId(const std::vector<UplayExecutable>& entries) {
  for (const UplayExecutable& entry : entries) {
    std::string id = ExtractInstallId(entry.register_);
    if (!id.empty()) return id;
  }
  return {};
}

}  // namespace

std::vector<UplayConfigRecord> ReadUplayConfigurations(std::string_view text) {
  ReadState state;
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    TakeLine(state, text.substr(start, end - start));
    start = end + 1;
  }
  Finish(state);
  return std::move(state.records);
}

void FinishUplayRecord(std::vector<UplayConfigRecord>& records, UplayConfigRecord record) {
  if (record.installId.empty()) record.installId = FirstInstallId(record.offlineExecutables);
  if (record.installId.empty()) record.installId = FirstInstallId(record.onlineExecutables);
  records.push_back(std::move(record));
}

std::string ExtractInstallId(std::string_view text) {
  constexpr std::string_view kInstalls = "Ubisoft\\Launcher\\Installs\\";
  const size_t at = text.find(kInstalls);
  if (at == kNone) return {};
  const std::string_view rest = text.substr(at + kInstalls.size());
  const size_t end = rest.find('\\');
  if (end == kNone) return {};
  const std::string_view digits = rest.substr(0, end);
  const bool allDigits =
      std::all_of(digits.begin(), digits.end(), [](unsigned char byte) { return std::isdigit(byte) != 0; });
  return allDigits ? std::string(digits) : std::string();
}

std::string_view GetUplayLineValue(std::string_view line) {
  const size_t colon = line.find(':');
  if (colon == kNone) return {};
  const size_t value = line.find_first_not_of(" \t", colon + 1);
  return value == kNone ? std::string_view() : line.substr(value);
}

}  // namespace tarnwick
