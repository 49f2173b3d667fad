// Reader: registry values, from their bytes.
#include "foundation/registry_value_reader.h"

namespace tarnwick {

bool IsRegistryTextType(uint32_t type) { return type == kRegistryText || type == kRegistryExpandableText; }

std::optional<std::u16string> DecodeRegistryText(uint32_t type, std::span<const unsigned char> bytes) {
  if (!IsRegistryTextType(type)) return std::nullopt;
  std::u16string text;
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto unit = static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8);
    if (unit == 0) break;
    text += unit;
  }
  return text;
}

}  // namespace tarnwick
