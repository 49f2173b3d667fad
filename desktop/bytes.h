#pragma once
// Little-endian numbers and aligned blocks, appended to a byte string. Every binary format here is written
// with these.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick::desktop {

inline void AppendByte(std::string& out, unsigned value) { out.push_back(static_cast<char>(value & 0xFF)); }

inline void Append16(std::string& out, unsigned value) {
  AppendByte(out, value);
  AppendByte(out, value >> 8);
}

inline void Append32(std::string& out, uint32_t value) {
  Append16(out, value);
  Append16(out, value >> 16);
}

inline void Append64(std::string& out, uint64_t value) {
  Append32(out, static_cast<uint32_t>(value));
  Append32(out, static_cast<uint32_t>(value >> 32));
}

inline void AppendBigEndian32(std::string& out, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) AppendByte(out, value >> shift);
}

// Zeros up to the next multiple of `step`.
inline void AlignTo(std::string& out, size_t step) {
  out.resize((out.size() + step - 1) / step * step, '\0');
}

inline void Put32(std::string& out, size_t place, uint32_t value) {
  std::string bytes;
  Append32(bytes, value);
  out.replace(place, 4, bytes);
}

// UTF-16 code units as bytes, without a terminator.
inline void AppendUnits(std::string& out, std::u16string_view text) {
  for (const char16_t unit : text) Append16(out, unit);
}

}  // namespace tarnwick::desktop
