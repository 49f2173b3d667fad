#include "foundation/registry_value_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// The first byte is the value's type, the others are its data.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  const auto text = tarnwick::DecodeRegistryText(data[0], {data + 1, size - 1});
  if (text.has_value() != tarnwick::IsRegistryTextType(data[0])) std::abort();
  if (text && (text->size() > (size - 1) / 2 || text->find(u'\0') != std::u16string::npos)) std::abort();
  return 0;
}
