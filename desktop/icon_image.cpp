// Writes icon images without Windows' help, so that the same picture always gives the same bytes.
#include "desktop/icon_image.h"

#include "desktop/bytes.h"

#include <zlib.h>
#include <stdexcept>

namespace tarnwick::desktop {
namespace {

const Bytef* ZlibBytes(const std::string& bytes) { return reinterpret_cast<const Bytef*>(bytes.data()); }

std::string Compressed(const std::string& bytes) {
  uLongf length = compressBound(static_cast<uLong>(bytes.size()));
  std::string packed(length, '\0');
  if (compress(reinterpret_cast<Bytef*>(packed.data()), &length, ZlibBytes(bytes),
               static_cast<uLong>(bytes.size())) != Z_OK) {
    throw std::runtime_error("an icon image can't be compressed");
  }
  packed.resize(length);
  return packed;
}

void AppendChunk(std::string& png, const std::string& type, const std::string& data) {
  AppendBigEndian32(png, static_cast<uint32_t>(data.size()));
  const std::string body = type + data;
  png += body;
  AppendBigEndian32(png, static_cast<uint32_t>(crc32(0, ZlibBytes(body), static_cast<uInt>(body.size()))));
}

std::string BitmapBytes(const IconImage& image) {
  const uint32_t size = static_cast<uint32_t>(image.size);
  std::string bytes;
  Append32(bytes, 40);
  Append32(bytes, size);
  Append32(bytes, size * 2);  // colours and mask together
  Append16(bytes, 1);
  Append16(bytes, 32);
  for (int field = 0; field < 6; ++field) Append32(bytes, 0);
  for (uint32_t pixel = 0; pixel < size * size; ++pixel) Append32(bytes, 0xFF000000 | (image.rgb & 0xFFFFFF));
  bytes.append(size_t{size + 31} / 32 * 4 * size, '\0');
  return bytes;
}

}  // namespace

std::string PngBytes(int size, uint32_t rgb) {
  std::string header;
  AppendBigEndian32(header, static_cast<uint32_t>(size));
  AppendBigEndian32(header, static_cast<uint32_t>(size));
  header += std::string("\x08\x06\x00\x00\x00", 5);  // 8 bits, red green blue alpha, no interlacing
  std::string row(1, '\0');
  for (int pixel = 0; pixel < size; ++pixel) AppendBigEndian32(row, (rgb << 8) | 0xFF);
  std::string rows;
  for (int line = 0; line < size; ++line) rows += row;
  std::string png = "\x89PNG\r\n\x1A\n";
  AppendChunk(png, "IHDR", header);
  AppendChunk(png, "IDAT", Compressed(rows));
  AppendChunk(png, "IEND", {});
  return png;
}

std::string IconImageBytes(const IconImage& image) {
  if (image.size < 1 || image.size > 256)
    throw std::runtime_error("an icon image has 1 to 256 pixels, not " + std::to_string(image.size));
  if (!image.png.empty()) return image.png;
  return image.size == 256 ? PngBytes(256, image.rgb) : BitmapBytes(image);
}

std::string IconEntryBytes(const IconImage& image, size_t length) {
  std::string entry;
  AppendByte(entry, static_cast<unsigned>(image.size));  // 256 is written as 0
  AppendByte(entry, static_cast<unsigned>(image.size));
  Append16(entry, 0);
  Append16(entry, 1);
  Append16(entry, 32);
  Append32(entry, static_cast<uint32_t>(length));
  return entry;
}

std::string IconFileBytes(const IconGroup& icon) {
  std::string file;
  Append16(file, 0);
  Append16(file, 1);
  Append16(file, static_cast<unsigned>(icon.images.size()));
  std::string images;
  const size_t first = 6 + 16 * icon.images.size();
  for (const IconImage& image : icon.images) {
    const std::string bytes = IconImageBytes(image);
    file += IconEntryBytes(image, bytes.size());
    Append32(file, static_cast<uint32_t>(first + images.size()));
    images += bytes;
  }
  return file + images;
}

}  // namespace tarnwick::desktop
