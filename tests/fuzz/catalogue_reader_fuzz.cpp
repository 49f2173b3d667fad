#include "catalogue/catalogue_reader.h"
#include "support/catalogue_reference.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace tarnwick;

// The input as it stands, and as the inside of one record: the second reaches the elements sooner.
void CheckAgainstPlainForm(std::string_view text) {
  if (tests::FirstDifference(ParseCatalogue(text), tests::ParseCataloguePlainly(text)) != -1) std::abort();
}

void CheckFieldOperations(const std::string& text) {
  if (DecodeEntities(text) != tests::DecodePlainly(text)) std::abort();
  if (NormalizeElementText(text) != tests::NormalizePlainly(text)) std::abort();
  ParseSourceKind(text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckAgainstPlainForm(text);
  const std::string record = "<GameSignature>" + std::string(text) + "</GameSignature>";
  CheckAgainstPlainForm(record);
  CheckFieldOperations(std::string(text));
  return 0;
}
