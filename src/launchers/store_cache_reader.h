#pragma once
// The Store's own caches: which product a package belongs to, and of what kind a product is. Both are
// searched as text for quoted keys; nothing of JSON's nesting or escapes is known. The values only classify
// packages: nothing is allowed or denied by them.

#include <map>
#include <string>
#include <string_view>

namespace tarnwick {

// Package family name -> Store product id.
using CategoryCache = std::map<std::string, std::string>;
// Store product id -> product kind, such as "Game".
using EntitlementsCache = std::map<std::string, std::string>;

struct FulfillmentData {
  std::string productId;
  std::string packageFamilyName;
};

// The object behind "FulfillmentData", from its opening brace to the next closing one. Both texts are empty
// where there is no such object; one that the object doesn't have is empty.
FulfillmentData ParseFulfillmentData(std::string_view text);

// Adds each object behind "Entitlements" that has a product id and a kind. Of entries of one id the first
// stays, also against one that `cache` held before.
void ParseEntitlements(std::string_view text, EntitlementsCache& cache);

}  // namespace tarnwick
