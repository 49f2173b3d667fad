#include "support/png_pixels.h"

#include "foundation/owner.h"

#include <objbase.h>
#include <shlwapi.h>
#include <wincodec.h>
#include <wincrypt.h>
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

std::string FromBase64(const std::string& text) {
  const auto length = static_cast<DWORD>(text.size());
  DWORD bytes = length;
  std::string decoded(length, '\0');
  if (!CryptStringToBinaryA(text.data(), length, CRYPT_STRING_BASE64, reinterpret_cast<BYTE*>(decoded.data()),
                            &bytes, nullptr, nullptr)) {
    throw std::runtime_error("no base 64 text");
  }
  decoded.resize(bytes);
  return decoded;
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
  const std::string bytes = FromBase64(std::string(uri.substr(kPrefix.size())));
  return DecodePng(bytes.data(), bytes.size());
}

}  // namespace tarnwick::tests
