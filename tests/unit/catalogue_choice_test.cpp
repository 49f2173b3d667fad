// The choice among existing files is tested through the scan's export.
#include "core/catalogue_choice.h"

#include "support/debug_capture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace tarnwick {
namespace {

std::wstring OutOfMemory(const std::string&) { throw std::bad_alloc(); }
std::wstring Odd(const std::string&) { throw 7; }

TEST(CatalogueChoice, ConvertsTheCallersPath) {
  EXPECT_EQ(AskedCatalogue("C:\\Игры\\list.xml"), L"C:\\Игры\\list.xml");
}

TEST(CatalogueChoice, TakesTheDecryptedCatalogueWithoutAPath) {
  EXPECT_EQ(AskedCatalogue(nullptr), L"MasterGameList_decrypted.xml");
  EXPECT_EQ(AskedCatalogue(""), L"MasterGameList_decrypted.xml");
}

TEST(CatalogueChoice, PathThatCanNotBeConvertedIsLoggedAndEmpty) {
  for (const auto convert : {OutOfMemory, Odd}) {
    const tests::DebugCapture capture;
    EXPECT_EQ(AskedCatalogue("list.xml", convert), L"");
    EXPECT_THAT(capture.Lines(),
                testing::ElementsAre("ERROR: Exception during UTF-8 to WideChar conversion."));
  }
}

}  // namespace
}  // namespace tarnwick
