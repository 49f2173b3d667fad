#pragma once
// The catalogue as comma-separated values: the form that people edit. Knows nothing of Windows.
//
// The header names the elements, in any order. A record stands in one line, except that
// - a line whose SourceEx holds several sources, parted by ";", makes one record for each; SourceExId then
//   holds their ids in the same order, of which some or all may be empty;
// - a column "Element@SOURCE" stands for the element's text in the record of that source, where it has one;
// - a column "checked" is for people, and makes nothing.

#include "catalogue/game_signature.h"
#include "host/catalogue/csv_reader.h"

#include <string>
#include <string_view>

namespace tarnwick::host {

// What the records of one file may take in memory: that of some 400,000.
inline constexpr size_t kMostRecordBytes = size_t{256} << 20;

// The records in the order of the lines. Throws CsvError for whatever is not as above.
GameList RecordsFromCsv(std::string_view text);

// One line for each record, with every element's column. RecordsFromCsv gives the same records back, unless a
// text holds what it refuses: more than a field may have, or no UTF-8, or no character of XML.
std::string CsvFromRecords(const GameList& games);

}  // namespace tarnwick::host
