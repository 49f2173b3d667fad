// Edge: the Windows Imaging Component's PNG encoder.
#include "inventory/png.h"

#include "foundation/owner.h"
#include "foundation/text.h"

#include <objbase.h>
#include <wincodec.h>

namespace tarnwick {
namespace {

struct GlobalLockTraits {
  using Value = HGLOBAL;
  static Value None() { return nullptr; }
  static void Close(Value memory) { GlobalUnlock(memory); }
};
using LockedMemory = Owner<GlobalLockTraits>;

ComPointer<IWICImagingFactory> ImagingFactory() {
  ComPointer<IWICImagingFactory> factory;
  if (FAILED(CoCreateInstance(CLSID_WICImagingFactory2, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                              reinterpret_cast<void**>(factory.Receive())))) {
    factory.Release();
  }
  return factory;
}

bool CopyStream(IStream* stream, std::vector<unsigned char>& bytes) {
  HGLOBAL memory = nullptr;  // the stream's own
  if (FAILED(GetHGlobalFromStream(stream, &memory))) return false;
  const auto* data = static_cast<const unsigned char*>(GlobalLock(memory));
  if (data == nullptr) return false;
  const LockedMemory locked(memory);
  const size_t size = GlobalSize(memory);
  if (size == 0) return false;
  bytes.assign(data, data + size);
  return true;
}

bool WriteFrame(IWICBitmapEncoder* encoder, IWICBitmap* bitmap) {
  ComPointer<IWICBitmapFrameEncode> frame;
  return SUCCEEDED(encoder->CreateNewFrame(frame.Receive(), nullptr)) &&
         SUCCEEDED(frame.Get()->Initialize(nullptr)) &&
         SUCCEEDED(frame.Get()->WriteSource(bitmap, nullptr)) && SUCCEEDED(frame.Get()->Commit()) &&
         SUCCEEDED(encoder->Commit());
}

}  // namespace

bool EncodeIconToPng(HICON icon, std::vector<unsigned char>& bytes) {
  bytes.clear();
  if (icon == nullptr) return false;
  const ComPointer<IWICImagingFactory> factory = ImagingFactory();
  if (!factory) return false;
  ComPointer<IWICBitmap> bitmap;
  ComPointer<IStream> stream;
  ComPointer<IWICBitmapEncoder> encoder;
  return SUCCEEDED(factory.Get()->CreateBitmapFromHICON(icon, bitmap.Receive())) &&
         SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive())) &&
         SUCCEEDED(factory.Get()->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.Receive())) &&
         SUCCEEDED(encoder.Get()->Initialize(stream.Get(), WICBitmapEncoderNoCache)) &&
         WriteFrame(encoder.Get(), bitmap.Get()) && CopyStream(stream.Get(), bytes);
}

std::string IconDataUri(HICON icon) {
  std::vector<unsigned char> bytes;
  return EncodeIconToPng(icon, bytes) ? kPngDataUriPrefix + Base64Encode(bytes.data(), bytes.size())
                                      : std::string();
}

}  // namespace tarnwick
