#include "inventory/png.h"

#include "foundation/com_scope.h"
#include "foundation/owner.h"
#include "support/png_pixels.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

// A square icon of one opaque colour.
Icon SolidIcon(int size, uint32_t rgb) {
  const auto pixels = static_cast<size_t>(size) * static_cast<size_t>(size);
  const std::vector<uint32_t> colour(pixels, 0xFF000000 | rgb);
  const std::vector<unsigned char> mask(pixels, 0);
  return Icon(
      CreateIcon(nullptr, size, size, 1, 32, mask.data(), reinterpret_cast<const BYTE*>(colour.data())));
}

TEST(EncodeIconToPng, GivesAPictureOfTheIconsOwnSizeAndColour) {
  const ComScope com;
  for (const int size : {16, 32, 48, 128, 256}) {
    const Icon icon = SolidIcon(size, 0x336699);
    ASSERT_TRUE(icon);
    std::vector<unsigned char> bytes = {1, 2, 3};
    ASSERT_TRUE(EncodeIconToPng(icon.Get(), bytes));
    const tests::Picture picture = tests::DecodePng(bytes.data(), bytes.size());
    EXPECT_EQ(picture.width, static_cast<unsigned>(size));
    EXPECT_EQ(picture.height, static_cast<unsigned>(size));
    EXPECT_EQ(picture.CentreRgb(), 0x336699u);
  }
}

TEST(EncodeIconToPng, ANullIconFailsAtOnce) {
  std::vector<unsigned char> bytes = {1, 2, 3};
  EXPECT_FALSE(EncodeIconToPng(nullptr, bytes));
  EXPECT_TRUE(bytes.empty());
}

TEST(EncodeIconToPng, AnIconThatIsNoneFails) {
  const ComScope com;
  std::vector<unsigned char> bytes;
  EXPECT_FALSE(EncodeIconToPng(reinterpret_cast<HICON>(static_cast<UINT_PTR>(0xBAD0)), bytes));
  EXPECT_TRUE(bytes.empty());
}

TEST(IconDataUri, IsThePrefixAndThePictureInBase64) {
  const ComScope com;
  const std::string uri = IconDataUri(SolidIcon(32, 0x123456).Get());
  EXPECT_EQ(uri.rfind("data:image/png;base64,iVBORw0KGgo", 0), 0u);
  EXPECT_EQ(tests::DecodePngDataUri(uri).CentreRgb(), 0x123456u);
}

TEST(IconDataUri, IsEmptyWithoutAnIcon) { EXPECT_EQ(IconDataUri(nullptr), ""); }

}  // namespace
}  // namespace tarnwick
