// Reader: the names of the catalogue's elements, laid out to be compared eight bytes at a time.
#include "catalogue/element_name_reader.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace tarnwick {
namespace {

constexpr size_t kWordSize = sizeof(uint64_t);
constexpr size_t kNameRoom = 3 * kWordSize;  // the longest name has 19 bytes
using NameWords = std::array<uint64_t, 3>;

// A name as words to compare under a mask. Names that share their eighth byte (all have one) form a chain,
// longest first, so that the first that matches is the longest that stands there.
struct NameEntry {
  NameWords bytes{};
  NameWords mask{};
  size_t nextInChain = kNoElement;
};

struct NameTable {
  std::array<NameEntry, kElements.size()> entries{};
  std::array<uint8_t, 256> chain{};
};

constexpr NameEntry MakeEntry(std::string_view name) {
  std::array<char, kNameRoom> bytes{};
  std::array<unsigned char, kNameRoom> mask{};
  for (size_t i = 0; i < name.size(); ++i) {
    bytes[i] = name[i];
    mask[i] = 0xFF;
  }
  return {.bytes = std::bit_cast<NameWords>(bytes), .mask = std::bit_cast<NameWords>(mask)};
}

constexpr NameTable MakeNameTable() {
  NameTable table;
  table.chain.fill(kNoElement);
  for (size_t length = kWordSize; length <= kNameRoom; ++length) {
    for (size_t element = 0; element < kElementCount; ++element) {
      const std::string_view name = kElements[element].name;
      if (name.size() != length) continue;
      uint8_t& first = table.chain[static_cast<unsigned char>(name[kWordSize - 1])];
      table.entries[element] = MakeEntry(name);
      table.entries[element].nextInChain = first;
      first = static_cast<uint8_t>(element);
    }
  }
  return table;
}
constexpr NameTable kNames = MakeNameTable();

bool Matches(const NameEntry& name, const NameWords& text) {
  uint64_t difference = 0;
  for (size_t i = 0; i < text.size(); ++i) difference |= (text[i] ^ name.bytes[i]) & name.mask[i];
  return difference == 0;
}

// Can a longer name go on with this byte where a shorter one ends?
constexpr bool ExtendsName(char byte) { return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z'); }

constexpr bool ExtensionsAreKnown() {
  for (const CatalogueElement& longer : kElements) {
    for (const CatalogueElement& shorter : kElements) {
      if (longer.name.size() <= shorter.name.size() || !longer.name.starts_with(shorter.name)) continue;
      if (!ExtendsName(longer.name[shorter.name.size()])) return false;
    }
  }
  return true;
}
static_assert(ExtensionsAreKnown());

}  // namespace

size_t NameAt(const char* at, const char* end, size_t guess) {
  const auto left = static_cast<size_t>(end - at);
  if (left < kWordSize) return kNoElement;
  NameWords text{};
  if (left > kNameRoom) {
    std::memcpy(text.data(), at, kNameRoom);
    if (Matches(kNames.entries[guess], text) && !ExtendsName(at[kElements[guess].name.size()])) return guess;
  } else {
    std::memcpy(text.data(), at, left);
  }
  size_t element = kNames.chain[static_cast<unsigned char>(at[kWordSize - 1])];
  while (element != kNoElement && !Matches(kNames.entries[element], text))
    element = kNames.entries[element].nextInChain;
  return element;
}

}  // namespace tarnwick
