#include "matching/signature_index.h"

#include <gmock/gmock.h>

namespace tarnwick {
namespace {

GameSignature Signature(const std::string& name, int32_t kind, const std::string& id) {
  GameSignature signature;
  signature.DisplayName = name;
  signature.SourceKind = kind;
  signature.SourceExId = id;
  return signature;
}

TEST(SignatureIndex, HoldsOneSourcesSignaturesByTheirKey) {
  const SignatureIndex index = IndexSignatures(
      {Signature("A", kSourceRiot, "1"), Signature("B", kSourceArc, "2"), Signature("C", kSourceRiot, ""),
       Signature("D", kSourceRiot, "3"), Signature("E", kSourceRiot, "1")},
      kSourceRiot, &GameSignature::SourceExId);
  EXPECT_EQ(index.size(), 2u);
  ASSERT_NE(FindSignature(index, "1"), nullptr);
  EXPECT_EQ(FindSignature(index, "1")->DisplayName, "E") << "the later one";
  EXPECT_EQ(FindSignature(index, "3")->DisplayName, "D");
  EXPECT_EQ(FindSignature(index, "2"), nullptr);
  EXPECT_EQ(FindSignature(index, ""), nullptr);
}

TEST(SignatureIndex, ComparesWithCase) {
  const SignatureIndex index =
      IndexSignatures({Signature("A", kSourceRiot, "Ab")}, kSourceRiot, &GameSignature::SourceExId);
  EXPECT_EQ(FindSignature(index, "ab"), nullptr);
}

}  // namespace
}  // namespace tarnwick
