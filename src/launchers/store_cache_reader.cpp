// Reader: the Store's caches, by text searches.
#include "launchers/store_cache_reader.h"

#include "launchers/json_text_reader.h"

namespace tarnwick {
namespace {

constexpr size_t kNone = std::string_view::npos;

// Takes the next object, from its opening brace to the first closing one behind it, off the text. Both are
// empty if there is none. Kept: the first closing brace ends an object, even if it is that of an object
// inside (docs/decisions/json-text.md).
std::string_view TakeObject(std::string_view& text) {
  const size_t start = text.find('{');
  const size_t end = start == kNone ? kNone : text.find('}', start);
  const std::string_view object = end == kNone ? std::string_view() : text.substr(start, end + 1 - start);
  text = end == kNone ? std::string_view() : text.substr(end + 1);
  return object;
}

// What follows the key, quotes included; empty if it isn't there.
std::string_view BehindKey(std::string_view text, std::string_view quotedKey) {
  const size_t at = text.find(quotedKey);
  return at == kNone ? std::string_view() : text.substr(at + quotedKey.size());
}

}  // namespace

FulfillmentData ParseFulfillmentData(std::string_view text) {
  std::string_view rest = BehindKey(text, "\"FulfillmentData\"");
  const std::string_view object = TakeObject(rest);
  return {JsonFindNextQuoted(object, "ProductId"), JsonFindNextQuoted(object, "PackageFamilyName")};
}

void ParseEntitlements(std::string_view text, EntitlementsCache& cache) {
  std::string_view rest = BehindKey(text, "\"Entitlements\"");
  for (std::string_view object = TakeObject(rest); !object.empty(); object = TakeObject(rest)) {
    const std::string productId = JsonFindNextQuoted(object, "ProductId");
    const std::string productKind = JsonFindNextQuoted(object, "ProductKind");
    if (!productId.empty() && !productKind.empty()) cache.emplace(productId, productKind);
  }
}

}  // namespace tarnwick
