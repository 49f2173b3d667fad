#include "launchers/store_cache_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

// A piece of the text that stood between two quotes inside one object.
bool IsQuotedPiece(std::string_view text, const std::string& piece) {
  return text.find('"' + piece + '"') != std::string_view::npos &&
         piece.find_first_of("\"}") == std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  tarnwick::EntitlementsCache cache;
  tarnwick::ParseEntitlements(text, cache);
  for (const auto& [productId, kind] : cache) {
    Require(!productId.empty() && IsQuotedPiece(text, productId));
    Require(!kind.empty() && IsQuotedPiece(text, kind));
  }
  const tarnwick::FulfillmentData found = tarnwick::ParseFulfillmentData(text);
  Require(found.productId.empty() || IsQuotedPiece(text, found.productId));
  Require(found.packageFamilyName.empty() || IsQuotedPiece(text, found.packageFamilyName));
  return 0;
}
