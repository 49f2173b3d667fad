#include "host/explain/scan_evidence.h"

#include "core/steam_url.h"
#include "foundation/text.h"
#include "host/explain/question_words.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace tarnwick::host {
namespace {

using common::Heard;
using std::string_view;

// How surely a text that holds this is about the game. Two games may share a folder, and names are words.
enum Weight { kNone, kName, kFolder, kOwn };

struct Wanted {
  size_t result;
  Weight weight;
};

struct TextHash {
  using is_transparent = void;
  size_t operator()(string_view text) const { return std::hash<string_view>()(text); }
};

using WantedTexts = std::unordered_map<std::string, std::vector<Wanted>, TextHash, std::equal_to<>>;
using Hits = std::vector<std::map<size_t, Weight>>;  // for each result: which question, and how surely

// Lower case, single backslashes: JSON files double them, and other files have slashes.
std::string Folded(const std::string& text) {
  std::string folded = ToLowerBytes(text);
  std::replace(folded.begin(), folded.end(), '/', '\\');
  const auto doubled = [](char a, char b) { return a == '\\' && b == '\\'; };
  folded.erase(std::unique(folded.begin(), folded.end(), doubled), folded.end());
  return folded;
}

// A source is a key, words of the strategy's own with an id or a key behind them, or words alone.
std::string KeyOrIdIn(const std::string& source) {
  if (const size_t key = source.find("HKEY_"); key != std::string::npos) return source.substr(key);
  const size_t colon = source.rfind(": ");
  return colon == std::string::npos ? std::string() : source.substr(colon + 2);
}

std::string FolderOf(const std::string& path) {
  const size_t separator = path.find_last_of("\\/");
  // A drive's root holds everything.
  return separator == std::string::npos || separator < 3 ? std::string() : path.substr(0, separator);
}

WantedTexts TextsOf(const std::vector<const ScanResult*>& results) {
  WantedTexts wanted;
  for (size_t i = 0; i < results.size(); ++i) {
    const ScanResult& result = *results[i];
    const std::pair<std::string, Weight> texts[] = {{result.exePath, kOwn},
                                                    {KeyOrIdIn(result.source), kOwn},
                                                    {FolderOf(result.exePath), kFolder},
                                                    {SteamAppId(result.launchUrl), kFolder},
                                                    {result.name, kName}};
    for (const auto& [text, weight] : texts) {
      if (!text.empty()) wanted[Folded(text)].push_back({i, weight});
    }
  }
  return wanted;
}

// Everything that follows looks at one question's texts for what is wanted.
struct Search {
  const WantedTexts& wanted;
  size_t question;
  Hits& hits;
};

void Look(const Search& search, string_view text) {
  const auto found = search.wanted.find(text);
  if (found == search.wanted.end()) return;
  for (const Wanted& wanted : found->second) {
    Weight& weight = search.hits[wanted.result][search.question];
    weight = std::max(weight, wanted.weight);
  }
}

// The whole, each folder above it and each part of the path.
void LookAtPath(const Search& search, string_view path) {
  constexpr size_t kLongestPath = 1024;  // what is longer is no path
  Look(search, path);
  if (path.size() > kLongestPath) return;
  size_t part = 0;
  for (size_t at = path.find('\\'); at != path.npos; at = path.find('\\', part)) {
    Look(search, path.substr(0, at));
    Look(search, path.substr(part, at - part));
    part = at + 1;
  }
  if (part > 0) Look(search, path.substr(part));
}

// "C:\x.exe,0", "name: X", "name=X".
void LookAtPiece(const Search& search, string_view piece) {
  while (!piece.empty() && piece.front() == ' ') piece.remove_prefix(1);
  while (!piece.empty() && piece.back() == ' ') piece.remove_suffix(1);
  if (piece.empty()) return;
  LookAtPath(search, piece);
  if (const size_t comma = piece.rfind(','); comma != piece.npos) LookAtPath(search, piece.substr(0, comma));
  if (const size_t colon = piece.find(": "); colon != piece.npos) LookAtPath(search, piece.substr(colon + 2));
  if (const size_t equals = piece.find('='); equals != piece.npos)
    LookAtPath(search, piece.substr(equals + 1));
}

bool EndsPiece(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '<' ||
         character == '>' || character == '|';
}

void LookAtText(const Search& search, const std::string& text) {
  const std::string folded = Folded(text);
  for (auto begin = folded.begin(); begin != folded.end();) {
    const auto end = std::find_if(begin, folded.end(), EndsPiece);
    LookAtPiece(search, string_view(begin, end));
    begin = end == folded.end() ? end : end + 1;
  }
}

// As they are read: how a question is put makes no difference.
bool ReadAlike(const Heard& one, const Heard& other) {
  return one.answer.given == other.answer.given && one.answer.text == other.answer.text &&
         QuestionInWords(one.question) == QuestionInWords(other.question);
}

Evidence Strongest(const std::vector<Heard>& heard, const std::map<size_t, Weight>& hits, size_t most) {
  std::vector<std::pair<size_t, Weight>> chosen;
  for (const auto& hit : hits) {
    const auto same = [&](const auto& other) { return ReadAlike(heard[hit.first], heard[other.first]); };
    if (std::none_of(chosen.begin(), chosen.end(), same)) chosen.emplace_back(hit);
  }
  std::ranges::stable_sort(chosen, std::greater<>(), &std::pair<size_t, Weight>::second);
  if (chosen.size() > most) chosen.resize(most);
  std::ranges::sort(chosen, {}, &std::pair<size_t, Weight>::first);
  Evidence evidence;
  for (const auto& hit : chosen) evidence.push_back(&heard[hit.first]);
  return evidence;
}

}  // namespace

// The texts of all results are looked for at once: a file with thousands of games is gone through once.
std::vector<Evidence> EvidenceFor(const std::vector<Heard>& heard,
                                  const std::vector<const ScanResult*>& results, size_t most) {
  const WantedTexts wanted = TextsOf(results);
  Hits hits(results.size());
  for (size_t i = 0; i < heard.size() && !wanted.empty(); ++i) {
    const Search search{wanted, i, hits};
    LookAtText(search, heard[i].question.subject);
    LookAtText(search, heard[i].answer.text);
  }
  std::vector<Evidence> evidence;
  for (const auto& hit : hits) evidence.push_back(Strongest(heard, hit, most));
  return evidence;
}

std::vector<MissReason> MissReasons(const std::vector<Heard>& heard) {
  std::vector<MissReason> reasons;
  std::unordered_map<std::string, size_t> places;
  for (const Heard& one : heard) {
    if (one.answer.given) continue;
    const auto [place, isNew] = places.emplace(MissInWords(one), reasons.size());
    if (isNew) reasons.push_back({place->first, 0});
    ++reasons[place->second].count;
  }
  std::ranges::stable_sort(reasons, std::greater<>(), &MissReason::count);
  return reasons;
}

}  // namespace tarnwick::host
