#include "desktop/png_check.h"

#include <zlib.h>

#include <cstdint>
#include <string_view>

namespace tarnwick::desktop {
namespace {

constexpr size_t kSignatureLength = 8;
constexpr size_t kChunkFrame = 12;  // length, type and sum

// 8 bits of red, green, blue and alpha, not interlaced: the form in which icons keep their pictures. Others are shown
// with wrong colours, or not at all.
constexpr std::string_view kForm("\x08\x06\x00\x00\x00", 5);

uint32_t BigEndian(const std::string& bytes, size_t place) {
  uint32_t number = 0;
  for (size_t digit = 0; digit < 4; ++digit)
    number = (number << 8) | static_cast<unsigned char>(bytes[place + digit]);
  return number;
}

struct Picture {
  std::string header;
  std::string packed;
  bool ended = false;
};

bool SumFits(const std::string& bytes, size_t place, size_t length) {
  const Bytef* body = reinterpret_cast<const Bytef*>(bytes.data()) + place + 4;
  return crc32(0, body, static_cast<uInt>(length + 4)) == BigEndian(bytes, place + 8 + length);
}

void TakeChunk(Picture& picture, const std::string& type, const std::string& data) {
  if (type == "IHDR") picture.header = data;
  if (type == "IDAT") picture.packed += data;
  if (type == "IEND") picture.ended = true;
}

// What could be read up to the first fault.
Picture ReadChunks(const std::string& bytes) {
  Picture picture;
  size_t place = kSignatureLength;
  while (!picture.ended && bytes.size() - place >= kChunkFrame) {
    const size_t length = BigEndian(bytes, place);
    if (length > bytes.size() - place - kChunkFrame || !SumFits(bytes, place, length)) break;
    TakeChunk(picture, bytes.substr(place + 4, 4), bytes.substr(place + 8, length));
    place += kChunkFrame + length;
  }
  if (place != bytes.size()) picture.ended = false;
  return picture;
}

bool PixelsUnpack(const std::string& packed, size_t size) {
  // A row has a byte for its filter. One byte more shows whether there are too many.
  const size_t wanted = size * (1 + 4 * size);
  std::string pixels(wanted + 1, '\0');
  uLongf length = static_cast<uLongf>(pixels.size());
  return uncompress(reinterpret_cast<Bytef*>(pixels.data()), &length,
                    reinterpret_cast<const Bytef*>(packed.data()),
                    static_cast<uLong>(packed.size())) == Z_OK &&
         length == wanted;
}

}  // namespace

std::string PngFault(const std::string& bytes, int size) {
  if (!bytes.starts_with("\x89PNG\r\n\x1A\n")) return "is no PNG picture";
  const Picture picture = ReadChunks(bytes);
  if (!picture.ended || picture.header.size() != 13) return "is a PNG picture that is damaged or cut";
  const uint32_t width = BigEndian(picture.header, 0);
  const uint32_t height = BigEndian(picture.header, 4);
  if (width != static_cast<uint32_t>(size) || height != width)
    return "is a picture of " + std::to_string(width) + " by " + std::to_string(height) + " pixels, not of " +
           std::to_string(size);
  if (picture.header.substr(8) != kForm)
    return "is no PNG picture of red, green, blue and alpha, 8 bits each";
  return PixelsUnpack(picture.packed, width) ? "" : "is a PNG picture whose pixels can't be unpacked";
}

}  // namespace tarnwick::desktop
