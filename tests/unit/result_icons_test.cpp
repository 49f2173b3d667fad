// Icons are told apart by the colours of their pictures.
#include "core/result_icons.h"

#include "desktop/desktop.h"
#include "foundation/windows_api.h"
#include "inventory/icons.h"
#include "support/png_pixels.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <thread>

namespace tarnwick {
namespace {

constexpr char kFolder[] = R"(C:\TarnwickTest\ResultIcons)";
constexpr uint32_t kRed = 0xC02020;
constexpr uint32_t kGreen = 0x20A040;
constexpr uint32_t kBlue = 0x2040C0;

desktop::ExecutableOptions Coloured(uint32_t rgb, uint64_t size = 0) {
  desktop::ExecutableOptions options;
  options.icons = {{{{32, rgb}}}};
  options.size = size;
  return options;
}

class ResultIcons : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return std::string(kFolder) + "\\" + name; }

  static ScanResult Result(const std::string& exePath, const std::string& displayIcon) {
    ScanResult result;
    result.name = "Foo";
    result.exePath = exePath;
    result.displayIcon = displayIcon;
    return result;
  }

  static uint32_t Colour(const ScanResult& result) {
    return tests::DecodePngDataUri(BuildScanResultIcon(result)).CentreRgb();
  }

  // The generic application icon, as a data URI; not every system has one.
  static std::string Stock() {
    const HRESULT com = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    const std::string uri = IconDataUri(LoadStockApplicationIcon().Get());
    if (SUCCEEDED(com)) CoUninitialize();
    return uri;
  }

  desktop::Desktop desktop_;
};

TEST_F(ResultIcons, DisplayIconComesFirst) {
  desktop_.Executable(Path("game.exe"), Coloured(kRed));
  desktop_.IconFile(Path("hint.ico"), {{{32, kGreen}}});
  EXPECT_EQ(Colour(Result(Path("game.exe"), Path("hint.ico"))), kGreen);
}

TEST_F(ResultIcons, DisplayIconMayBeQuotedAndCarryAnIndex) {
  desktop::ExecutableOptions two;
  two.icons = {{{{32, kRed}}}, {{{32, kBlue}}}};
  desktop_.Executable(Path("two.exe"), two);
  EXPECT_EQ(Colour(Result("", "\"" + Path("two.exe") + "\",1")), kBlue);
  EXPECT_EQ(Colour(Result("", Path("two.exe") + ",0")), kRed);
}

TEST_F(ResultIcons, WithoutDisplayIconTheExecutablesIconIsTaken) {
  desktop_.Executable(Path("game.exe"), Coloured(kRed));
  desktop_.Executable(Path("larger.exe"), Coloured(kBlue, 300'000));
  EXPECT_EQ(Colour(Result(Path("game.exe"), "")), kRed);
}

TEST_F(ResultIcons, UninstallersIconGivesWayToTheExecutablesFolder) {
  desktop_.Executable(Path("unins000.exe"), Coloured(kBlue));
  desktop_.Executable(Path("game.exe"), Coloured(kRed));
  desktop_.Executable(Path("bin\\larger.exe"), Coloured(kGreen, 300'000));
  EXPECT_EQ(Colour(Result(Path("game.exe"), Path("unins000.exe"))), kGreen);
}

TEST_F(ResultIcons, MissingExecutablesFolderIsSearchedBehindAnInstallersName) {
  // The executable's own name holds "install", so it is passed over, and found again as the folder's largest.
  desktop_.Executable(Path("installed game.exe"), Coloured(kRed));
  EXPECT_EQ(Colour(Result(Path("installed game.exe"), "")), kRed);
}

TEST_F(ResultIcons, TakesPathsOfAllKinds) {
  for (const char* name : {"Тетрис\\игра.exe", "俄罗斯方块\\游戏.exe", "Pokémon Café\\é.exe"}) {
    desktop_.Executable(Path(name), Coloured(kGreen));
    EXPECT_EQ(Colour(Result(Path(name), "")), kGreen) << name;
  }
}

TEST_F(ResultIcons, ResultWithoutPathAndDisplayIconGetsTheGenericIconIfThereIsOne) {
  EXPECT_EQ(BuildScanResultIcon(Result("", "")), Stock());
}

TEST_F(ResultIcons, FolderIsWorkedOutIn260Units) {
  // Of a longer path the first 259 units are kept, and cut at their last separator.
  const std::string deep = Path(std::string(100, 'a'));
  desktop_.Executable(deep + "\\near.exe", Coloured(kGreen));
  const std::string uninstaller = deep + "\\" + std::string(200, 'b') + "\\unins000.exe";
  EXPECT_EQ(Colour(Result(uninstaller, Path("unins000.exe"))), kGreen);
}

TEST_F(ResultIcons, LeavesTheThreadsComAsItWas) {
  desktop_.Executable(Path("game.exe"), Coloured(kRed));
  std::thread([&] {
    EXPECT_EQ(Colour(Result(Path("game.exe"), "")), kRed);
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    EXPECT_FALSE(BuildScanResultIcon(Result(Path("game.exe"), "")).empty());
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
    CoUninitialize();
    CoUninitialize();
  }).join();
}

TEST_F(ResultIcons, CachesNothing) {
  desktop_.IconFile(Path("hint.ico"), {{{32, kGreen}}});
  EXPECT_EQ(Colour(Result("", Path("hint.ico"))), kGreen);
  desktop_.IconFile(Path("hint.ico"), {{{32, kBlue}}});
  EXPECT_EQ(Colour(Result("", Path("hint.ico"))), kBlue);
}

}  // namespace
}  // namespace tarnwick
