#include "catalogue/catalogue_reader.h"
#include "common/catalogue_text.h"
#include "host/catalogue/csv_records.h"
#include "host/catalogue/merge.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace tarnwick;
using namespace tarnwick::host;

void ExpectSame(const GameList& got, const GameList& wanted) {
  if (got.size() != wanted.size()) std::abort();
  for (size_t i = 0; i < got.size(); ++i) {
    if (!ChangedFields(got[i], wanted[i]).empty()) std::abort();
  }
}

// A fault stands inside the text, or right behind it.
void CheckPlace(std::string_view text, TextPlace place) {
  size_t lines = 1;
  for (const char byte : text) lines += byte == '\n' ? 1 : 0;
  if (place.line < 1 || place.line > lines || place.column < 1 || place.column > text.size() + 1)
    std::abort();
}

// What is read comes back through both forms.
void CheckText(std::string_view text) {
  try {
    const GameList games = RecordsFromCsv(text);
    ExpectSame(RecordsFromCsv(CsvFromRecords(games)), games);
    ExpectSame(ParseCatalogue(common::CatalogueText(games)), games);
  } catch (const CsvError& error) {
    CheckPlace(text, error.place);
  }
}

}  // namespace

// The input as it stands, and behind a header: the second reaches the records sooner.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckText(text);
  CheckText("DisplayName,SourceEx,SourceExId,DefaultExe,DefaultExe@GOG,checked\n" + text);
  return 0;
}
