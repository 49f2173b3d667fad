#pragma once
// Icons at the size at which a page shows them: a library's icon has up to 256 pixels a side, and a page of
// hundreds of those would weigh tens of megabytes.

#include <wincodec.h>
#include <wrl/client.h>

#include <cstdint>
#include <string>

namespace tarnwick::host {

// Holds COM on its thread while it lives.
class IconScaler {
 public:
  IconScaler();
  ~IconScaler();
  IconScaler(const IconScaler&) = delete;
  IconScaler& operator=(const IconScaler&) = delete;

  // `icon` is a data URI of a PNG, or empty. The same picture with no side longer than `size` pixels, its
  // proportions kept. What is no larger stays byte for byte, and so does what can't be read as a picture.
  std::string ScaleDown(const std::string& icon, int32_t size) const;

 private:
  bool entered_;
  Microsoft::WRL::ComPtr<IWICImagingFactory> factory_;
};

}  // namespace tarnwick::host
