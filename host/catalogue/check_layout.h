#pragma once
// Where the records of a catalogue stand and where the library finds each of their elements: what
// catalogue_reader.h reads, with its places. Texts are bytes; places are offsets into the whole text. No
// function keeps state.

#include "catalogue/element_name_reader.h"
#include "catalogue/game_signature.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace tarnwick::host {

inline constexpr size_t kNowhere = std::string_view::npos;

struct Span {
  size_t begin = kNowhere;
  size_t end = kNowhere;

  bool Exists() const { return begin != kNowhere; }
};

inline std::string_view TextOf(std::string_view text, const Span& span) {
  return span.Exists() ? text.substr(span.begin, span.end - span.begin) : std::string_view();
}

struct ElementPlace {
  size_t tag = kNowhere;  // the opening tag at which the library's search stops, maybe one of a longer name
  size_t own = kNowhere;  // the first opening tag with exactly the name
  Span text;              // as the library cuts it out; nowhere: the field is empty
};

// A tag that is not as catalogues have them.
enum class Oddity { kUnknown, kRepeated, kBlankInClosing, kRecordInside, kRecordSkipped };
struct OddTag {
  size_t at = 0;
  Oddity oddity = Oddity::kUnknown;
  std::string_view name;
};

struct RecordPlace {
  size_t open = 0;  // the record's opening tag
  size_t end = 0;   // behind its closing tag
  std::array<ElementPlace, kRecordElement> elements;
  std::vector<OddTag> oddTags;  // the first kMostOddTags of them
};
inline constexpr size_t kMostOddTags = 100;

// The next record at or behind `from`, as the library's search finds it. False: there is none, or it is not
// closed; `record.open` is then where it opens, or kNowhere.
bool NextRecord(std::string_view text, size_t from, RecordPlace& record);

// Tags between `from` and `to`, where no record is, that mean to open one.
std::vector<OddTag> SkippedRecords(std::string_view text, size_t from, size_t to);

// The record as the library reads it.
GameSignature ReadPlacedRecord(std::string_view text, const RecordPlace& record);

// The raw text of an element by its own tag, where the library's search stops at another one.
Span OwnText(std::string_view text, const RecordPlace& record, size_t element);

// The field that the library makes of an element's raw text: normalised, and decoded but for SourceEx.
std::string FieldText(size_t element, std::string_view raw);

}  // namespace tarnwick::host
