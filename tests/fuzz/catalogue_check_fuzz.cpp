#include "catalogue/catalogue_reader.h"
#include "host/catalogue/check_characters.h"
#include "host/catalogue/check_layout.h"
#include "host/catalogue/check_text.h"
#include "host/catalogue/fix_text.h"
#include "support/catalogue_reference.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace tarnwick;

// The check finds each record where the library reads it.
GameList PlacedRecords(std::string_view text) {
  GameList games;
  host::RecordPlace place;
  for (size_t at = 0; host::NextRecord(text, at, place); at = place.end)
    games.push_back(host::ReadPlacedRecord(text, place));
  return games;
}

void Check(const std::string& text) {
  if (tests::FirstDifference(PlacedRecords(text), ParseCatalogue(text)) != -1) std::abort();
  host::Findings findings = host::CheckText(text);
  if (auto fault = host::FindCharacterFault(text)) host::AddFinding(findings, *fault);
  host::PlaceFindings(findings, text);
  for (const host::Finding& finding : findings.list) {
    if (finding.at > text.size() || finding.line == 0 || finding.column == 0) std::abort();
  }
}

void Fix(const std::string& text) {
  const std::string fixed = host::FixText(host::FixDeclaration(text).text).text;
  if (host::FixText(host::FixDeclaration(fixed).text).text != fixed) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  for (const std::string& input : {text, "<GameSignature>" + text + "</GameSignature>"}) {
    Check(input);
    Fix(input);
  }
  return 0;
}
