#include "catalogue/catalogue_reader.h"
#include "support/catalogue_reference.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace tarnwick;

// The input as it stands, and as the inside of one record: the second reaches the elements sooner.
void CheckAgainstPlainForm(std::string_view text) {
  if (tests::FirstDifference(ParseCatalogue(text), tests::ParseCataloguePlainly(text)) != -1) std::abort();
}

// Decoding never makes a text longer, and normalising is done once and for all.
void CheckFieldOperations(std::string_view text) {
  if (DecodeEntities(text).size() > text.size()) std::abort();
  const std::string normal = NormalizeElementText(text);
  if (NormalizeElementText(normal) != normal) std::abort();
  ParseSourceKind(normal);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckAgainstPlainForm(text);
  CheckAgainstPlainForm("<GameSignature>" + std::string(text) + "</GameSignature>");
  CheckFieldOperations(text);
  return 0;
}
