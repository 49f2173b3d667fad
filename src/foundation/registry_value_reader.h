#pragma once
// The text in the raw bytes of a registry value, as the registry hands them over: it promises neither a
// terminator nor an even length.

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tarnwick {

// The types that are told apart, with their numbers in the registry.
inline constexpr uint32_t kRegistryText = 1;            // REG_SZ
inline constexpr uint32_t kRegistryExpandableText = 2;  // REG_EXPAND_SZ
inline constexpr uint32_t kRegistryNumber = 4;          // REG_DWORD

bool IsRegistryTextType(uint32_t type);

// The UTF-16 units up to the first NUL or the last whole unit; an odd last byte is dropped. Expandable texts
// are not expanded. Nothing for a value of another type; no bytes are an empty text.
std::optional<std::u16string> DecodeRegistryText(uint32_t type, std::span<const unsigned char> bytes);

}  // namespace tarnwick
