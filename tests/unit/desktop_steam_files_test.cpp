#include "desktop/steam_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwick::desktop {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string Bytes(std::initializer_list<unsigned> values) {
  std::string bytes;
  for (const unsigned value : values) bytes.push_back(static_cast<char>(value));
  return bytes;
}

uint32_t Number(const std::string& bytes, size_t place) {
  uint32_t number = 0;
  for (size_t byte = 4; byte-- > 0;)
    number = (number << 8) | static_cast<unsigned char>(bytes.at(place + byte));
  return number;
}

AppInfoApp Game() { return {70, "Игра", "game", "Game", {"run.sh", "game.exe"}}; }

TEST(DesktopSteamFiles, ListsLibrariesWithDoubledBackslashes) {
  EXPECT_EQ(LibraryFoldersText({R"(C:\Steam)", R"(D:\Игры)"}),
            "\"libraryfolders\"\n{\n"
            "\t\"0\"\n\t{\n\t\t\"path\"\t\t\"C:\\\\Steam\"\n\t\t\"label\"\t\t\"\"\n\t}\n"
            "\t\"1\"\n\t{\n\t\t\"path\"\t\t\"D:\\\\Игры\"\n\t\t\"label\"\t\t\"\"\n\t}\n"
            "}\n");
  EXPECT_EQ(LibraryFoldersText({}), "\"libraryfolders\"\n{\n}\n");
}

TEST(DesktopSteamFiles, WritesManifestsOneValueALine) {
  const std::string text = AppManifestText("70", "A Game", "A Folder");
  EXPECT_THAT(text, HasSubstr("\n\t\"appid\"\t\t\"70\"\n"));
  EXPECT_THAT(text, HasSubstr("\n\t\"name\"\t\t\"A Game\"\n"));
  EXPECT_THAT(text, HasSubstr("\n\t\"installdir\"\t\t\"A Folder\"\n"));
}

TEST(DesktopSteamFiles, WritesAppInfoOfVersion39WithKeyNamesInTheText) {
  const std::string bytes = AppInfoBytes(39, {Game()});
  EXPECT_EQ(Number(bytes, 0), 0x07564427u);
  EXPECT_EQ(Number(bytes, 8), 70u);
  const uint32_t size = Number(bytes, 12);
  // The record ends where its size says, and the id 0 ends the file.
  EXPECT_EQ(bytes.size(), 16u + size + 4u);
  EXPECT_EQ(Number(bytes, 16 + size), 0u);
  EXPECT_THAT(bytes.substr(16 + 40),
              testing::StartsWith(Bytes({0, 'a', 'p', 'p', 'i', 'n', 'f', 'o', 0, 2})));
  EXPECT_THAT(bytes, HasSubstr("\x01name" + Bytes({0}) + "Игра" + Bytes({0})));
  EXPECT_THAT(bytes, HasSubstr("\x01"
                               "executable" +
                               Bytes({0}) + "game.exe" + Bytes({0, 8})));
}

TEST(DesktopSteamFiles, WritesAppInfoOfVersion40WithLongerHeaders) {
  const std::string bytes = AppInfoBytes(40, {Game()});
  EXPECT_EQ(static_cast<unsigned char>(bytes[0]), 40);
  EXPECT_EQ(Number(bytes, 8), 70u);
  EXPECT_THAT(bytes.substr(16 + 60), testing::StartsWith(Bytes({0, 'a', 'p', 'p'})));
  EXPECT_EQ(bytes.size(), AppInfoBytes(39, {Game()}).size() + 20);
}

TEST(DesktopSteamFiles, WritesAppInfoFromVersion41OnWithAStringTable) {
  for (const uint32_t version : {41u, 42u, 255u}) {
    const std::string bytes = AppInfoBytes(version, {Game(), Game()});
    EXPECT_EQ(static_cast<unsigned char>(bytes[0]), version);
    const uint32_t table = Number(bytes, 8);
    EXPECT_EQ(Number(bytes, 12), 0u);
    EXPECT_EQ(Number(bytes, 16), 70u);
    EXPECT_EQ(Number(bytes, table - 4), 0u);
    // appinfo, appid, common, name, type, config, installdir, launch, 0, executable, 1: shared by both
    // applications.
    EXPECT_EQ(Number(bytes, table), 11u);
    EXPECT_EQ(bytes.substr(table + 4, 8), "appinfo" + Bytes({0}));
    EXPECT_EQ(bytes.substr(16 + 8 + 60, 5), Bytes({0, 0, 0, 0, 0}));
    EXPECT_THAT(bytes.substr(0, table), Not(HasSubstr("executable")));
  }
}

TEST(DesktopSteamFiles, LeavesOutEmptyTextsOfAnApp) {
  const std::string bytes = AppInfoBytes(40, {{7, "", "", "", {}}});
  EXPECT_THAT(bytes, Not(HasSubstr("name")));
  EXPECT_THAT(bytes, Not(HasSubstr("installdir")));
  EXPECT_THAT(bytes, HasSubstr("launch"));
}

TEST(DesktopSteamFiles, WritesShortcutsAsMarkedFields) {
  const std::string bytes = ShortcutsBytes({{"Game", R"("C:\g.exe")", R"("C:\")"}, {"Zwei", "z", "y"}});
  const std::string zero = Bytes({0});
  EXPECT_THAT(bytes, testing::StartsWith(zero + "shortcuts" + zero + zero + "0" + zero +
                                         "\x01"
                                         "AppName" +
                                         zero +
                                         "\x01"
                                         "Game" +
                                         zero +
                                         "\x01"
                                         "exe" +
                                         zero + "\x01\"C:\\g.exe\"" + zero + "\x01StartDir" + zero +
                                         "\x01\"C:\\\"" + zero));
  EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\x02'), 2);
  EXPECT_THAT(bytes, testing::EndsWith(Bytes({8, 8, 8})));
}

}  // namespace
}  // namespace tarnwick::desktop
