// The console report through the built library, with its own strategies.
#include "common/catalogue_text.h"
#include "desktop/desktop.h"
#include "support/current_directory.h"
#include "support/debug_capture.h"
#include "support/library.h"
#include "support/png_pixels.h"
#include "support/strategy_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace tarnwick::tests {
namespace {

constexpr char kFolder[] = R"(C:\TarnwickTest\ReportExport)";
constexpr char kKey[] = R"(HKEY_CURRENT_USER\SOFTWARE\TarnwickTest\ReportExport)";

class ConsoleReportExport : public testing::Test {
 protected:
  void SetUp() override {
    desktop_.Folder(kFolder);
    there_.emplace(kFolder);
  }
  void TearDown() override { there_.reset(); }

  desktop::Desktop desktop_;
  std::optional<CurrentDirectory> there_;
  Library library_{TARNWICK_DLL};
};

TEST_F(ConsoleReportExport, ReportsAnInstalledGameWithItsIcon) {
  desktop::ExecutableOptions red;
  red.icons = {{{{32, 0xC02020}}}};
  desktop_.Executable(std::string(kFolder) + "\\Foo\\foo.exe", red);
  desktop_.String(kKey, "InstallLocation", std::string(kFolder) + "\\Foo");
  GameSignature game;
  game.DisplayName = "Игра";
  game.RegistryKey = kKey;
  game.DefaultExe = "foo.exe";
  desktop_.File(std::string(kFolder) + "\\MasterGameList.xml", common::CatalogueText({game}));
  const DebugCapture capture;
  library_.RunMultiPlatformGameScan();
  const std::vector<std::string> lines = capture.Lines();
  EXPECT_THAT(lines, testing::Contains("Loaded 1 game configurations."));
  const auto found = std::find(lines.begin(), lines.end(), "Found 1 unique games.");
  ASSERT_EQ(lines.end() - found, 5) << "nothing stands behind the one game";
  EXPECT_EQ(found[1], "\n[1] Игра");
  EXPECT_EQ(found[2], std::string("    Source: ") + kKey);
  EXPECT_EQ(found[3], std::string("    Executable: ") + kFolder + "\\Foo\\foo.exe");
  ASSERT_THAT(found[4], testing::StartsWith("    Icon: data:"));
  EXPECT_EQ(DecodePngDataUri(found[4].substr(10)).CentreRgb(), 0xC02020u);
}

TEST_F(ConsoleReportExport, StartsEveryStrategyOnce) {
  desktop_.File(std::string(kFolder) + "\\MasterGameList.xml", common::CatalogueText({GameSignature()}));
  const DebugCapture capture;
  library_.RunMultiPlatformGameScan();
  const std::vector<std::string> lines = capture.Lines();
  const auto starts = std::count_if(lines.begin(), lines.end(), [](const std::string& line) {
    return line.rfind("Strategy [", 0) == 0 && line.size() > 7 && line.substr(line.size() - 7) == "] START";
  });
  EXPECT_EQ(starts, std::ssize(kStrategyRows));
}

TEST_F(ConsoleReportExport, NeverLooksAtTheDecryptedCatalogue) {
  desktop_.File(std::string(kFolder) + "\\MasterGameList_decrypted.xml",
                common::CatalogueText({GameSignature()}));
  const DebugCapture capture;
  library_.RunMultiPlatformGameScan();
  EXPECT_THAT(capture.Lines(), testing::ElementsAre("Starting Multi-Platform Game Scan...",
                                                    "Error: MasterGameList.xml not found!"));
}

}  // namespace
}  // namespace tarnwick::tests
