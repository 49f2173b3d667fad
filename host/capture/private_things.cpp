// Reader.
#include "host/capture/private_things.h"

#include "host/capture/private_places.h"
#include "host/capture/stand_ins.h"

#include <algorithm>
#include <set>
#include <vector>

namespace tarnwick::host {
namespace {

// The ways in which bytes are read: UTF-16 may begin at odd places, too.
struct Reading {
  Coding coding;
  size_t offset;
};
constexpr Reading kReadings[] = {{Coding::kUtf8, 0}, {Coding::kUtf16, 0}, {Coding::kUtf16, 1}};

std::u32string_view WordOf(PrivateKind kind) {
  switch (kind) {
    case PrivateKind::kMachine:
      return U"machine";
    case PrivateKind::kAccount:
      return U"account";
    case PrivateKind::kMail:
      return U"mail";
    default:
      return U"user";
  }
}

void Add(PrivateThings& things, const std::u32string& folded, PrivateKind kind, bool everywhere) {
  const auto [found, fresh] = things.byText.try_emplace(folded, PrivateThing{kind, false, false, {}});
  found->second.everywhere = found->second.everywhere || (everywhere && !IsOrdinary(folded));
}

void FindIn(PrivateThings& things, const CodedText& coded) {
  for (const PrivateSpan& span : PrivateSpans(coded))
    Add(things, coded.folded.substr(span.begin, span.end - span.begin), span.kind, span.everywhere);
}

// Words to look for, by their first character, the longest first.
using Words = std::map<char32_t, std::vector<std::u32string_view>>;

Words WordsOf(const PrivateThings& things) {
  Words words;
  for (const auto& [text, thing] : things.byText) {
    if (thing.everywhere) words[text.front()].push_back(text);
  }
  for (auto& [first, list] : words) {
    std::ranges::stable_sort(list, std::greater(), [](std::u32string_view word) { return word.size(); });
  }
  return words;
}

bool StandsAlone(std::u32string_view text, size_t begin, size_t end) {
  const bool joinsBefore = begin > 0 && IsWordCharacter(text[begin - 1]) && IsWordCharacter(text[begin]);
  const bool joinsBehind = end < text.size() && IsWordCharacter(text[end]) && IsWordCharacter(text[end - 1]);
  return !joinsBefore && !joinsBehind;
}

void AppendWords(const Words& words, std::u32string_view text, std::vector<PrivateSpan>& spans) {
  for (size_t at = 0; at < text.size(); ++at) {
    const auto list = words.find(text[at]);
    if (list == words.end()) continue;
    const auto word = std::ranges::find_if(list->second, [&](std::u32string_view one) {
      return text.substr(at, one.size()) == one && StandsAlone(text, at, at + one.size());
    });
    if (word != list->second.end()) spans.push_back({at, at + word->size(), {}, true});
  }
}

// The first of those that overlap, of those that begin together the longest.
void DropOverlapping(std::vector<PrivateSpan>& spans) {
  std::ranges::stable_sort(spans, [](const PrivateSpan& a, const PrivateSpan& b) {
    return a.begin != b.begin ? a.begin < b.begin : a.end > b.end;
  });
  size_t end = 0;
  std::erase_if(spans, [&](const PrivateSpan& span) {
    const bool overlaps = span.begin < end;
    if (!overlaps) end = span.end;
    return overlaps;
  });
}

void ReplaceIn(PrivateThings& things, const Words& words, std::string& bytes, const CodedText& coded) {
  std::vector<PrivateSpan> spans = PrivateSpans(coded);
  AppendWords(words, coded.folded, spans);
  DropOverlapping(spans);
  for (const PrivateSpan& span : spans) {
    const auto found = things.byText.find(coded.folded.substr(span.begin, span.end - span.begin));
    if (found == things.byText.end()) continue;
    found->second.replaced = true;
    const std::u32string_view spelling =
        std::u32string_view(coded.text).substr(span.begin, span.end - span.begin);
    Overwrite(bytes, coded, span.begin, InCaseOf(spelling, found->second.standIn));
  }
}

// A stand-in that is neither another's nor itself an original.
std::u32string FreshStandIn(const PrivateThings& things, const std::u32string& text, PrivateKind kind,
                            std::set<std::u32string>& taken) {
  constexpr size_t kMostTries = 10000;
  std::u32string standIn;
  for (size_t number = 1; number < kMostTries; ++number) {
    standIn = StandIn(text, WordOf(kind), number);
    if (things.byText.count(standIn) == 0 && taken.insert(standIn).second) return standIn;
  }
  return standIn;
}

}  // namespace

void AddPrivate(PrivateThings& things, const std::string& name, PrivateKind kind) {
  const std::u32string folded = Decode(name, Coding::kUtf8).folded;
  if (!folded.empty() && !IsNobody(folded)) Add(things, folded, kind, true);
}

void FindPrivate(PrivateThings& things, std::string_view text) {
  FindIn(things, Decode(text, Coding::kUtf8));
}

void FindPrivateInBytes(PrivateThings& things, std::string_view bytes) {
  for (const Reading& reading : kReadings) FindIn(things, Decode(bytes, reading.coding, reading.offset));
}

bool NamesAnAccount(const std::string& field) { return IsAccountField(Decode(field, Coding::kUtf8).folded); }

void GiveOutStandIns(PrivateThings& things, const std::string& user) {
  std::set<std::u32string> taken;
  const auto first = things.byText.find(Decode(user, Coding::kUtf8).folded);
  if (first != things.byText.end())
    first->second.standIn = FreshStandIn(things, first->first, first->second.kind, taken);
  for (auto& [text, thing] : things.byText) {
    if (thing.standIn.empty()) thing.standIn = FreshStandIn(things, text, thing.kind, taken);
  }
}

void ReplacePrivate(PrivateThings& things, std::string& text) {
  ReplaceIn(things, WordsOf(things), text, Decode(text, Coding::kUtf8));
}

void ReplacePrivateInBytes(PrivateThings& things, std::string& bytes) {
  const Words words = WordsOf(things);
  for (const Reading& reading : kReadings)
    ReplaceIn(things, words, bytes, Decode(bytes, reading.coding, reading.offset));
}

void ReplaceWhole(PrivateThings& things, std::string& name) {
  const CodedText coded = Decode(name, Coding::kUtf8);
  const auto found = things.byText.find(coded.folded);
  if (found == things.byText.end()) return;
  found->second.replaced = true;
  Overwrite(name, coded, 0, InCaseOf(coded.text, found->second.standIn));
}

uint32_t ReplacedNumber(PrivateThings& things, uint32_t number) {
  const std::string digits = std::to_string(number);
  const auto found = things.byText.find(std::u32string(digits.begin(), digits.end()));
  if (found == things.byText.end() || !found->second.everywhere) return number;
  found->second.replaced = true;
  return static_cast<uint32_t>(
      std::stoul(std::string(found->second.standIn.begin(), found->second.standIn.end())));
}

}  // namespace tarnwick::host
