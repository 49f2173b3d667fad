#include "catalogue/decipher.h"

#include "catalogue/cipher_constants.h"
#include "support/hex_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tarnwick {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes FromText(const std::string& text) { return {text.begin(), text.end()}; }

Bytes Enciphered(const std::string& text) {
  Bytes bytes = FromText(text);
  EXPECT_TRUE(EncipherCatalogue(bytes));
  return bytes;
}

TEST(DecipherCatalogue, RefusesAnEmptyVector) {
  Bytes bytes;
  EXPECT_FALSE(DecipherCatalogue(bytes));
  EXPECT_TRUE(bytes.empty());
}

TEST(DecipherCatalogue, GivesBackWhatWasEnciphered) {
  for (const size_t length : {1u, 15u, 16u, 17u, 31u, 32u, 1000u, 100'003u}) {
    std::string text(length, 'x');
    for (size_t i = 0; i < length; ++i) text[i] = static_cast<char>(i * 7);
    Bytes bytes = Enciphered(text);
    EXPECT_EQ(bytes.size(), (length / 16 + 1) * 16);
    EXPECT_FALSE(std::equal(text.begin(), text.end(), bytes.begin(), [](char plain, unsigned char cipher) {
      return static_cast<unsigned char>(plain) == cipher;
    }));
    ASSERT_TRUE(DecipherCatalogue(bytes));
    EXPECT_EQ(bytes, FromText(text));
  }
}

TEST(DecipherCatalogue, TakesSixteenBytesOfPaddingForAnEmptyText) {
  Bytes bytes = Enciphered("");
  ASSERT_EQ(bytes.size(), 16u);
  EXPECT_TRUE(DecipherCatalogue(bytes));
  EXPECT_TRUE(bytes.empty());
}

TEST(DecipherCatalogue, EnciphersTheSameTextAlwaysAlike) {
  EXPECT_EQ(Enciphered("<GameSignature>"), Enciphered("<GameSignature>"));
}

// CBC: two equal blocks must not look alike, and a block depends on those before it.
TEST(DecipherCatalogue, ChainsTheBlocks) {
  const Bytes bytes = Enciphered(std::string(32, 'a'));
  EXPECT_FALSE(std::equal(bytes.begin(), bytes.begin() + 16, bytes.begin() + 16));
}

TEST(DecipherCatalogue, RefusesLengthsThatAreNoWholeBlocks) {
  const Bytes whole = Enciphered(std::string(40, 'a'));
  for (size_t length = 1; length < whole.size(); ++length) {
    if (length % 16 == 0) continue;
    Bytes cut(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length));
    EXPECT_FALSE(DecipherCatalogue(cut)) << length;
  }
}

TEST(DecipherCatalogue, RefusesWrongPadding) {
  // Without its last block the text ends in sixteen times 'a', which is no padding.
  Bytes cut = Enciphered(std::string(32, 'a'));
  cut.resize(32);
  EXPECT_FALSE(DecipherCatalogue(cut));
}

TEST(DecipherCatalogue, RefusesPlainText) {
  Bytes marked = FromText("\xEF\xBB\xBF<ArrayOfGameSignature>");
  EXPECT_FALSE(DecipherCatalogue(marked));
  Bytes blocks = FromText(std::string(64, ' '));
  EXPECT_FALSE(DecipherCatalogue(blocks));
}

TEST(DecipherCatalogue, RefusesAHundredMegabytesOfRubbish) {
  Bytes bytes(100'000'000, 'x');
  EXPECT_FALSE(DecipherCatalogue(bytes));
}

TEST(CipherConstants, AreAWholeKeyAndAWholeBlock) {
  EXPECT_EQ(kCatalogueKey.size(), 32u);
  EXPECT_EQ(kCatalogueInitialVector.size(), 16u);
}

TEST(CatalogueFormatPage, ShowsTheEncipheredFormOfItsOwnExample) {
  const std::string plain = tests::HexExample("catalogue", 0);
  EXPECT_EQ(Enciphered(plain), FromText(tests::HexExample("catalogue", 1)));
}

}  // namespace
}  // namespace tarnwick
