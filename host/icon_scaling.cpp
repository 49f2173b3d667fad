// Edge: the Windows Imaging Component reads and writes the pictures. The scaling is done here: the
// component's own scaler is good on Windows, but Wine's knows nearest neighbour alone, and what GDI stretches
// loses its transparency.
#include "host/icon_scaling.h"

#include <windows.h>

#include <objbase.h>
#include <wincrypt.h>

#include <algorithm>
#include <vector>

namespace tarnwick::host {
namespace {

using Microsoft::WRL::ComPtr;

constexpr const char* kPngPrefix = "data:image/png;base64,";
// Nothing that the library gives comes near; what claims to is not worth the memory.
constexpr uint32_t kLongestSide = 4096;

struct Bitmap {
  uint32_t width = 0;
  uint32_t height = 0;
  std::vector<uint32_t> pixels;  // 0xAARRGGBB, row by row
};

std::vector<BYTE> FromBase64(const std::string& text, size_t from) {
  const DWORD length = static_cast<DWORD>(text.size() - from);
  DWORD size = 0;
  if (!CryptStringToBinaryA(text.data() + from, length, CRYPT_STRING_BASE64, nullptr, &size, nullptr,
                            nullptr))
    return {};
  std::vector<BYTE> bytes(size);
  CryptStringToBinaryA(text.data() + from, length, CRYPT_STRING_BASE64, bytes.data(), &size, nullptr,
                       nullptr);
  return bytes;
}

std::string ToBase64(const std::vector<BYTE>& bytes) {
  constexpr DWORD kFormat = CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF;
  const DWORD size = static_cast<DWORD>(bytes.size());
  DWORD length = 0;  // with the NUL
  if (!CryptBinaryToStringA(bytes.data(), size, kFormat, nullptr, &length)) return {};
  std::string text(length, '\0');
  CryptBinaryToStringA(bytes.data(), size, kFormat, text.data(), &length);
  text.resize(length);  // without it
  return text;
}

bool Decode(IWICImagingFactory* factory, std::vector<BYTE>& bytes, Bitmap& bitmap) {
  ComPtr<IWICStream> stream;
  ComPtr<IWICBitmapDecoder> decoder;
  ComPtr<IWICBitmapFrameDecode> frame;
  ComPtr<IWICFormatConverter> converter;
  if (FAILED(factory->CreateStream(&stream)) ||
      FAILED(stream->InitializeFromMemory(bytes.data(), static_cast<DWORD>(bytes.size()))) ||
      FAILED(factory->CreateDecoderFromStream(stream.Get(), nullptr, WICDecodeMetadataCacheOnDemand,
                                              &decoder)) ||
      FAILED(decoder->GetFrame(0, &frame)) || FAILED(frame->GetSize(&bitmap.width, &bitmap.height)) ||
      std::max(bitmap.width, bitmap.height) > kLongestSide ||
      FAILED(factory->CreateFormatConverter(&converter)) ||
      FAILED(converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone,
                                   nullptr, 0, WICBitmapPaletteTypeCustom)))
    return false;
  bitmap.pixels.resize(size_t{bitmap.width} * bitmap.height);
  return SUCCEEDED(converter->CopyPixels(nullptr, bitmap.width * 4,
                                         static_cast<UINT>(bitmap.pixels.size() * 4),
                                         reinterpret_cast<BYTE*>(bitmap.pixels.data())));
}

bool Encode(IWICImagingFactory* factory, Bitmap& bitmap, IStream* stream) {
  ComPtr<IWICBitmapEncoder> encoder;
  ComPtr<IWICBitmapFrameEncode> frame;
  WICPixelFormatGUID format = GUID_WICPixelFormat32bppBGRA;
  return SUCCEEDED(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, &encoder)) &&
         SUCCEEDED(encoder->Initialize(stream, WICBitmapEncoderNoCache)) &&
         SUCCEEDED(encoder->CreateNewFrame(&frame, nullptr)) && SUCCEEDED(frame->Initialize(nullptr)) &&
         SUCCEEDED(frame->SetSize(bitmap.width, bitmap.height)) &&
         SUCCEEDED(frame->SetPixelFormat(&format)) &&
         SUCCEEDED(frame->WritePixels(bitmap.height, bitmap.width * 4,
                                      static_cast<UINT>(bitmap.pixels.size() * 4),
                                      reinterpret_cast<BYTE*>(bitmap.pixels.data()))) &&
         SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
}

std::vector<BYTE> BytesOf(IStream* stream) {
  STATSTG status = {};
  ULONG count = 0;
  if (FAILED(stream->Stat(&status, STATFLAG_NONAME)) || FAILED(stream->Seek({}, STREAM_SEEK_SET, nullptr)))
    return {};
  std::vector<BYTE> bytes(static_cast<size_t>(status.cbSize.QuadPart));
  if (FAILED(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count))) return {};
  bytes.resize(count);
  return bytes;
}

// Empty where that fails.
std::vector<BYTE> PngBytes(IWICImagingFactory* factory, Bitmap& bitmap) {
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, &stream)) || !Encode(factory, bitmap, stream.Get()))
    return {};
  return BytesOf(stream.Get());
}

// The pixels of a longer row that one of a shorter row covers, and how much of a pixel at `index`, in units
// that make one pixel of the shorter row `longer` units wide.
struct Span {
  uint32_t first;
  uint32_t last;
  uint64_t begin;
  uint64_t end;
  uint64_t shorter;

  Span(uint32_t at, uint32_t longer, uint32_t shorterLength)
      : begin(uint64_t{at} * longer), end(begin + longer), shorter(shorterLength) {
    first = static_cast<uint32_t>(begin / shorter);
    last = static_cast<uint32_t>((end - 1) / shorter);
  }
  uint64_t Weight(uint32_t index) const {
    return std::min(end, (index + 1) * shorter) - std::max(begin, index * shorter);
  }
};

// The mean of the pixels under one pixel. Colours count by their opacity: what is transparent has none.
uint32_t MeanPixel(const Bitmap& from, const Span& columns, const Span& rows) {
  uint64_t opacity = 0;
  uint64_t colours[3] = {};
  for (uint32_t y = rows.first; y <= rows.last; ++y) {
    const uint64_t rowWeight = rows.Weight(y);
    for (uint32_t x = columns.first; x <= columns.last; ++x) {
      const uint32_t pixel = from.pixels[size_t{y} * from.width + x];
      const uint64_t weight = rowWeight * columns.Weight(x) * (pixel >> 24);
      opacity += weight;
      for (int i = 0; i < 3; ++i) colours[i] += weight * (pixel >> (8 * i) & 0xFF);
    }
  }
  const uint64_t area = uint64_t{from.width} * from.height;
  uint64_t mean = (opacity + area / 2) / area << 24;
  for (int i = 0; opacity != 0 && i < 3; ++i) mean |= (colours[i] + opacity / 2) / opacity << (8 * i);
  return static_cast<uint32_t>(mean);
}

Bitmap Shrink(const Bitmap& from, uint32_t size) {
  const uint32_t longest = std::max(from.width, from.height);
  const auto scaled = [&](uint32_t side) {
    return static_cast<uint32_t>(std::max<uint64_t>(1, (uint64_t{side} * size + longest / 2) / longest));
  };
  Bitmap to{scaled(from.width), scaled(from.height), {}};
  to.pixels.reserve(size_t{to.width} * to.height);
  for (uint32_t y = 0; y < to.height; ++y) {
    const Span rows(y, from.height, to.height);
    for (uint32_t x = 0; x < to.width; ++x)
      to.pixels.push_back(MeanPixel(from, Span(x, from.width, to.width), rows));
  }
  return to;
}

}  // namespace

IconScaler::IconScaler() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {
  CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory, &factory_);
}

IconScaler::~IconScaler() {
  factory_.Reset();
  if (entered_) CoUninitialize();
}

std::string IconScaler::ScaleDown(const std::string& icon, int32_t size) const {
  const std::string prefix = kPngPrefix;
  if (!factory_ || size < 1 || !icon.starts_with(prefix)) return icon;
  std::vector<BYTE> bytes = FromBase64(icon, prefix.size());
  const auto side = static_cast<uint32_t>(size);
  Bitmap picture;
  if (bytes.empty() || !Decode(factory_.Get(), bytes, picture)) return icon;
  if (std::max(picture.width, picture.height) <= side) return icon;
  Bitmap shrunk = Shrink(picture, side);
  bytes = PngBytes(factory_.Get(), shrunk);
  return bytes.empty() ? icon : prefix + ToBase64(bytes);
}

}  // namespace tarnwick::host
