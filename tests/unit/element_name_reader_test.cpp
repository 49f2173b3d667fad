#include "catalogue/element_name_reader.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnwick {
namespace {

size_t NameIn(const std::string& text, size_t guess) {
  return NameAt(text.data(), text.data() + text.size(), guess);
}

std::string NameText(size_t element) {
  return element == kNoElement ? "none" : std::string(kElements[element].name);
}

// The longest name that a text begins with, by looking at all of them.
size_t PlainNameIn(const std::string& text) {
  size_t longest = kNoElement;
  for (size_t element = 0; element < kElementCount; ++element) {
    if (!text.starts_with(kElements[element].name)) continue;
    if (longest == kNoElement || kElements[element].name.size() > kElements[longest].name.size())
      longest = element;
  }
  return longest;
}

// A guess may be wrong, and the text may end anywhere.
TEST(ElementName, IsTheLongestThatStandsThereWhateverIsGuessed) {
  const std::string tails[] = {"", ">", "32", "3", "Id", "X>", " i:nil=\"true\"/><DefaultFolder32>"};
  for (const CatalogueElement& name : kElements) {
    for (const std::string& tail : tails) {
      const std::string whole = std::string(name.name) + tail;
      for (size_t length = 0; length <= whole.size(); ++length) {
        const std::string text = whole.substr(0, length);
        for (size_t guess = 0; guess < kElementCount; ++guess)
          ASSERT_EQ(NameText(NameIn(text, guess)), NameText(PlainNameIn(text))) << text << " " << guess;
      }
    }
  }
}

TEST(ElementName, IsNoneForAnythingElse) {
  for (const char* text : {"", "Default", "DefaultFold", "defaultexe>", "Unknown element of some length",
                           "xDefaultExe and what comes behind it"}) {
    EXPECT_EQ(NameIn(text, 0), kNoElement) << text;
  }
}

TEST(ElementName, KnowsTheNextShorterNameOfEach) {
  const auto shorter = [](const std::string& name) {
    return NameText(kShorterName[NameIn(name + ">", kRecordElement)]);
  };
  EXPECT_EQ(shorter("DefaultFolderExe32"), "DefaultFolderExe");
  EXPECT_EQ(shorter("DefaultFolderExe"), "DefaultFolder");
  EXPECT_EQ(shorter("SourceExId"), "SourceEx");
  EXPECT_EQ(shorter("DefaultFolder"), "none");
}

}  // namespace
}  // namespace tarnwick
