#pragma once
// What is wrong with one record of a catalogue.

#include "host/catalogue/check_findings.h"
#include "host/catalogue/check_layout.h"

#include <string_view>

namespace tarnwick::host {

struct RecordCheck {
  std::string_view text;  // the whole catalogue's
  const RecordPlace& place;
  GameSignature meant;  // with each element's own text, where the library's search stops at another's
  std::string name;     // as findings have it
};

RecordCheck MeantRecord(std::string_view text, const RecordPlace& place);

// Where a finding about an element is shown: its text, or else its tag, or else the record's.
size_t PlaceOf(const RecordCheck& record, size_t element);

// The element that fills a field.
size_t ElementOf(std::string GameSignature::* field);

void CheckRecord(const RecordCheck& record, Findings& findings);

}  // namespace tarnwick::host
