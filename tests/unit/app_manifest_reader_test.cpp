#include "steam/app_manifest_reader.h"

#include "support/hex_page.h"
#include "support/samples.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

namespace tarnwick {
namespace {

SteamManifestInfo Read(const std::string& bytes) {
  std::istringstream text(bytes);
  return ReadAppManifest(text);
}

const std::string kFile = R"("AppState"
{
	"appid"		"620"
	"Universe"		"1"
	"LauncherPath"		"C:\\Program Files (x86)\\Steam\\steam.exe"
	"name"		"Портал 2"
	"StateFlags"		"4"
	"installdir"		"Portal 2"
	"InstalledDepots"
	{
		"624"
		{
			"manifest"		"8207314901980262131"
		}
	}
}
)";

TEST(AppManifestReader, TakesIdNameAndFolder) {
  const SteamManifestInfo manifest = Read(kFile);
  EXPECT_EQ(manifest.appId, "620");
  EXPECT_EQ(manifest.name, "Портал 2");
  EXPECT_EQ(manifest.installDir, "Portal 2");
  EXPECT_EQ(manifest.exePath, "") << "stays empty";
}

TEST(AppManifestReader, TheLastAppIdCounts) {
  EXPECT_EQ(Read("\"appid\" \"1\"\n\"appid\" \"2\"\n").appId, "2");
  EXPECT_EQ(Read("\"appid\" \"1\"\n\"appid\" \"\"\n").appId, "") << "an empty value overwrites too";
}

TEST(AppManifestReader, TheLastInstallDirCounts) {
  EXPECT_EQ(Read("\"installdir\" \"a\"\n\"installdir\" \"b\"\n").installDir, "b");
}

TEST(AppManifestReader, TheFirstNameThatIsNotEmptyCounts) {
  EXPECT_EQ(Read("\"name\" \"a\"\n\"name\" \"b\"\n").name, "a");
  EXPECT_EQ(Read("\"name\" \"\"\n\"name\" \"b\"\n\"name\" \"c\"\n").name, "b");
}

TEST(AppManifestReader, ALineThatHoldsAnEarlierKeyIsUsedUp) {
  EXPECT_EQ(Read(R"("appid" "1" "name" "n")").name, "");
  EXPECT_EQ(Read(R"("name" "n" "appid" "1")").appId, "1");
  EXPECT_EQ(Read(R"("name" "n" "appid" "1")").name, "")
      << "the order of the keys decides, not that of the text";
  EXPECT_EQ(Read(R"("name" "n" "installdir" "d")").installDir, "");
}

TEST(AppManifestReader, ALineIsUsedUpEvenWhenItsValueCannotBeCutOut) {
  EXPECT_EQ(Read(R"("installdir" "d" "appid")").installDir, "");
  EXPECT_EQ(Read(R"("installdir" "d" "name")").installDir, "");
}

TEST(AppManifestReader, WithTheNameKnownALineFallsThroughToTheFolder) {
  const SteamManifestInfo manifest = Read("\"name\" \"n\"\n\"name\" \"x\" \"installdir\" \"d\"\n");
  EXPECT_EQ(manifest.name, "n");
  EXPECT_EQ(manifest.installDir, "d");
}

TEST(AppManifestReader, ValuesAreNotUnescaped) {
  EXPECT_EQ(Read(R"("installdir" "a\\b\"c")").installDir, R"(a\\b\)");
}

TEST(AppManifestReader, AKeyNeedsTwoFurtherQuotes) {
  for (const std::string rest : {"", " ", " 5", " \"", " \"5", "\""}) {
    EXPECT_EQ(Read("\"appid\"" + rest).appId, "") << rest;
    EXPECT_EQ(Read("\"name\"" + rest).name, "") << rest;
    EXPECT_EQ(Read("\"installdir\"" + rest).installDir, "") << rest;
  }
}

TEST(AppManifestReader, KeysAreCaseSensitiveAndKeepTheirQuotes) {
  EXPECT_EQ(Read(R"("AppID" "1")").appId, "");
  EXPECT_EQ(Read(R"(appid "1")").appId, "");
  EXPECT_EQ(Read(R"("lastname" "1")").name, "");
}

TEST(AppManifestReader, DepthAndBracesAreNotLookedAt) {
  EXPECT_EQ(Read("\"UserConfig\"\n{\n\"appid\" \"7\"\n}\n").appId, "7");
}

TEST(AppManifestReader, CarriageReturnsAndAMissingLastLineFeedDoNoHarm) {
  EXPECT_EQ(Read("\"appid\" \"1\"\r\n\"name\" \"n\"").name, "n");
}

TEST(AppManifestReader, AFileWithoutLineFeedsGivesTheFirstKeyAlone) {
  std::string flat = kFile;
  std::replace(flat.begin(), flat.end(), '\n', ' ');
  const SteamManifestInfo manifest = Read(flat);
  EXPECT_EQ(manifest.appId, "620");
  EXPECT_EQ(manifest.name + manifest.installDir, "");
}

TEST(AppManifestReader, Utf16NulsAndNoiseGiveAnEmptyRecord) {
  std::string wide = "\xFF\xFE";
  for (const char byte : kFile) wide += {byte, '\0'};
  for (const std::string& bytes : {wide, std::string(), std::string(100'000, '\0'), std::string(100'000, '"'),
                                   std::string(100'000, '\xC3'), std::string(100'000, '\n')}) {
    const SteamManifestInfo manifest = Read(bytes);
    EXPECT_EQ(manifest.appId + manifest.name + manifest.installDir + manifest.exePath, "");
  }
}

TEST(AppManifestReader, AHugeLineIsReadWhole) {
  const std::string huge(5'000'000, 'x');
  EXPECT_EQ(Read(huge + "\"name\"" + huge + "\"" + huge + "\"").name, huge);
}

TEST(AppManifestReader, EveryPrefixGivesEachFieldWholeOrNotAtAll) {
  const SteamManifestInfo whole = Read(kFile);
  for (size_t length = 0; length <= kFile.size(); ++length) {
    const SteamManifestInfo part = Read(kFile.substr(0, length));
    EXPECT_THAT(part.appId, testing::AnyOf("", whole.appId)) << length;
    EXPECT_THAT(part.name, testing::AnyOf("", whole.name)) << length;
    EXPECT_THAT(part.installDir, testing::AnyOf("", whole.installDir)) << length;
  }
}

TEST(AppManifestReader, AStreamThatIsNotOpenGivesAnEmptyRecord) {
  std::ifstream closed;
  EXPECT_EQ(ReadAppManifest(closed).appId, "");
}

TEST(AppManifestReader, TheDocumentedExampleReadsAsItsPageSays) {
  const SteamManifestInfo manifest = Read(tests::HexExample("appmanifest"));
  EXPECT_EQ(manifest.appId, "4242");
  EXPECT_EQ(manifest.name, "Täuschung");
  EXPECT_EQ(manifest.installDir, "Deception");
}

TEST(AppManifestReader, RealCaptures) {
  struct Expected {
    std::string id, name, installDir;
  };
  for (const Expected& expected :
       {Expected{"228980", "Steamworks Common Redistributables", "Steamworks Shared"},
        Expected{"620", "Portal 2", "Portal 2"},
        Expected{"730", "Counter-Strike 2", "Counter-Strike Global Offensive"}}) {
    const auto bytes = tests::Sample("steam/2026_appmanifest_" + expected.id + ".acf");
    if (!bytes) GTEST_SKIP() << "skipped: no samples here";
    const SteamManifestInfo manifest = Read(*bytes);
    EXPECT_EQ(manifest.appId, expected.id);
    EXPECT_EQ(manifest.name, expected.name);
    EXPECT_EQ(manifest.installDir, expected.installDir);
  }
}

}  // namespace
}  // namespace tarnwick
