// Writes icon images without Windows' help, so that the same picture always gives the same bytes.
#include "desktop/icon_image.h"

#include "desktop/bytes.h"

#include <algorithm>
#include <stdexcept>

namespace tarnwick::desktop {
namespace {

uint32_t Crc32(const std::string& bytes) {
  uint32_t crc = 0xFFFFFFFF;
  for (const char byte : bytes) {
    crc ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xEDB88320 : crc >> 1;
  }
  return ~crc;
}

uint32_t Adler32(const std::string& bytes) {
  uint32_t low = 1;
  uint32_t high = 0;
  for (const char byte : bytes) {
    low = (low + static_cast<unsigned char>(byte)) % 65521;
    high = (high + low) % 65521;
  }
  return (high << 16) | low;
}

// The bit stream of the deflate format: numbers begin with their low bit, codes with their high bit.
struct BitStream {
  std::string bytes;
  int used = 8;
};

void PutBits(BitStream& stream, uint32_t bits, int count) {
  for (int bit = 0; bit < count; ++bit) {
    if (stream.used == 8) {
      stream.bytes.push_back('\0');
      stream.used = 0;
    }
    stream.bytes.back() = static_cast<char>(stream.bytes.back() | (((bits >> bit) & 1) << stream.used));
    ++stream.used;
  }
}

void PutCode(BitStream& stream, uint32_t code, int count) {
  for (int bit = count - 1; bit >= 0; --bit) PutBits(stream, (code >> bit) & 1, 1);
}

void PutLiteral(BitStream& stream, unsigned char byte) {
  byte < 144 ? PutCode(stream, 0x30u + byte, 8) : PutCode(stream, 0x190u + byte - 144u, 9);
}

// Copies 258 bytes, the longest match, from `distance` back.
void PutLongestMatch(BitStream& stream, uint32_t distanceCode, uint32_t extra, int extraBits) {
  PutCode(stream, 0xC0 + 285 - 280, 8);
  PutCode(stream, distanceCode, 5);
  PutBits(stream, extra, extraBits);
}

// Deflates rows that are all alike: the first pixel is written, everything else copies from four bytes, or
// from one row, back. What doesn't fill a longest match is written byte by byte.
std::string Deflate(const std::string& rows, size_t rowLength) {
  BitStream stream;
  PutBits(stream, 1, 1);  // the last block
  PutBits(stream, 1, 2);  // fixed codes
  size_t place = 0;
  const bool rowFits = rowLength == 1025;  // distance code 20 begins at 1025
  while (place < rows.size()) {
    const size_t inRow = place % rowLength;
    const bool room = rows.size() - place >= 258;
    if (rowFits && place >= rowLength && room) {
      PutLongestMatch(stream, 20, 0, 9);
      place += 258;
    } else if (place < rowLength && inRow >= 5 && rowLength - inRow >= 258) {
      PutLongestMatch(stream, 3, 0, 0);
      place += 258;
    } else {
      PutLiteral(stream, static_cast<unsigned char>(rows[place]));
      ++place;
    }
  }
  PutCode(stream, 0, 7);  // end of block
  return stream.bytes;
}

void AppendChunk(std::string& png, const std::string& type, const std::string& data) {
  AppendBigEndian32(png, static_cast<uint32_t>(data.size()));
  const std::string body = type + data;
  png += body;
  AppendBigEndian32(png, Crc32(body));
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
  bytes.append((size + 31) / 32 * 4 * size, '\0');
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
  std::string data = "\x78\x01" + Deflate(rows, row.size());
  AppendBigEndian32(data, Adler32(rows));
  std::string png = "\x89PNG\r\n\x1A\n";
  AppendChunk(png, "IHDR", header);
  AppendChunk(png, "IDAT", data);
  AppendChunk(png, "IEND", {});
  return png;
}

std::string IconImageBytes(const IconImage& image) {
  if (image.size < 1 || image.size > 256)
    throw std::runtime_error("an icon image has 1 to 256 pixels, not " + std::to_string(image.size));
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
