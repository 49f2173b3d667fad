// A version resource is a tree of blocks: length, length of the value, type (1 text, 0 binary), a key in
// UTF-16, the value, the children; each part begins at a multiple of four bytes.
#include "desktop/version_resource.h"

#include "desktop/bytes.h"
#include "desktop/value_bytes.h"

#include <array>

namespace tarnwick::desktop {
namespace {

constexpr unsigned kBinary = 0;
constexpr unsigned kText = 1;

// `valueLength` counts bytes in a binary block and UTF-16 units in a text block.
std::string Block(const std::string& key, unsigned type, const std::string& value, size_t valueLength,
                  const std::vector<std::string>& children = {}) {
  std::string block;
  Append16(block, 0);
  Append16(block, static_cast<unsigned>(valueLength));
  Append16(block, type);
  block += TerminatedUnits(key);
  AlignTo(block, 4);
  block += value;
  for (const std::string& child : children) {
    AlignTo(block, 4);
    block += child;
  }
  std::string length;
  Append16(length, static_cast<unsigned>(block.size()));
  return block.replace(0, 2, length);
}

std::string FixedInfo() {
  constexpr std::array<uint32_t, 13> fields = {0xFEEF04BD, 0x00010000, 0x00010000, 0, 0x00010000, 0, 0x3F,
                                               0,          0x00040004, 1,          0, 0,          0};
  std::string bytes;
  for (const uint32_t field : fields) Append32(bytes, field);
  return bytes;
}

std::string TableName(const VersionStrings& table) {
  constexpr char digits[] = "0123456789abcdef";
  const uint32_t number = (static_cast<uint32_t>(table.language) << 16) | table.codePage;
  std::string name;
  for (int shift = 28; shift >= 0; shift -= 4) name.push_back(digits[(number >> shift) & 0xF]);
  return name;
}

std::string StringTable(const VersionStrings& table) {
  std::vector<std::string> strings;
  for (const auto& [name, text] : table.values) {
    const std::string value = TerminatedUnits(text);
    strings.push_back(Block(name, kText, value, value.size() / 2));
  }
  return Block(TableName(table), kText, {}, 0, strings);
}

}  // namespace

std::string VersionResourceBytes(const std::vector<VersionStrings>& versions) {
  std::vector<std::string> tables;
  std::string translations;
  for (const VersionStrings& table : versions) {
    tables.push_back(StringTable(table));
    Append16(translations, table.language);
    Append16(translations, table.codePage);
  }
  const std::string strings = Block("StringFileInfo", kText, {}, 0, tables);
  const std::string variables =
      Block("VarFileInfo", kText, {}, 0, {Block("Translation", kBinary, translations, translations.size())});
  const std::string fixed = FixedInfo();
  return Block("VS_VERSION_INFO", kBinary, fixed, fixed.size(), {strings, variables});
}

}  // namespace tarnwick::desktop
