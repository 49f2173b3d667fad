#include "support/png_pixels.h"

#include "foundation/owner.h"

#include <objbase.h>
#include <shlwapi.h>
#include <wincodec.h>
#include <stdexcept>

namespace tarnwick::tests {
namespace {

void Require(HRESULT answer, const char* step) {
  if (FAILED(answer)) throw std::runtime_error(std::string("the picture can't be decoded: ") + step);
}

// COM for this scope; the thread may already be in any apartment.
struct Com {
  Com() : entered(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ~Com() {
    if (entered) CoUninitialize();
  }
  bool entered;
};

std::string FromBase64(std::string_view text) {
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  uint32_t group = 0;
  int bits = 0;
  for (const char digit : text) {
    const size_t value = alphabet.find(digit);
    if (digit == '=') break;
    if (value == std::string::npos) throw std::runtime_error("no base 64 text");
    group = group << 6 | static_cast<uint32_t>(value);
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      bytes += static_cast<char>(group >> bits & 0xFF);
    }
  }
  return bytes;
}

}  // namespace

uint32_t Picture::CentreRgb() const {
  return pixels.at(static_cast<size_t>(height / 2) * width + width / 2) & 0xFFFFFF;
}

Picture DecodePng(const void* bytes, size_t size) {
  const Com com;
  const ComPointer<IStream> stream(
      SHCreateMemStream(static_cast<const BYTE*>(bytes), static_cast<UINT>(size)));
  if (!stream) throw std::runtime_error("no memory for the picture");
  ComPointer<IWICImagingFactory> factory;
  ComPointer<IWICBitmapDecoder> decoder;
  ComPointer<IWICBitmapFrameDecode> frame;
  ComPointer<IWICBitmapSource> converted;
  Require(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                           reinterpret_cast<void**>(factory.Receive())),
          "factory");
  Require(factory.Get()->CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnLoad,
                                                 decoder.Receive()),
          "decoder");
  GUID format = {};
  Require(decoder.Get()->GetContainerFormat(&format), "format");
  if (!IsEqualGUID(format, GUID_ContainerFormatPng)) throw std::runtime_error("the picture is no PNG");
  Require(decoder.Get()->GetFrame(0, frame.Receive()), "frame");
  Require(WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, frame.Get(), converted.Receive()),
          "conversion");
  Picture picture;
  Require(converted.Get()->GetSize(&picture.width, &picture.height), "size");
  picture.pixels.resize(static_cast<size_t>(picture.width) * picture.height);
  Require(
      converted.Get()->CopyPixels(nullptr, picture.width * 4, static_cast<UINT>(picture.pixels.size() * 4),
                                  reinterpret_cast<BYTE*>(picture.pixels.data())),
      "pixels");
  return picture;
}

Picture DecodePngDataUri(std::string_view uri) {
  constexpr std::string_view kPrefix = "data:image/png;base64,";
  if (!uri.starts_with(kPrefix)) throw std::runtime_error("no data URI of a PNG");
  const std::string bytes = FromBase64(uri.substr(kPrefix.size()));
  return DecodePng(bytes.data(), bytes.size());
}

}  // namespace tarnwick::tests
