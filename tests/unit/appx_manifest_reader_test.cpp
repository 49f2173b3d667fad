#include "launchers/appx_manifest_reader.h"

#include "support/hex_page.h"
#include "support/hostile_texts.h"

#include <gtest/gtest.h>

#include <tuple>

namespace tarnwick {
namespace {

const std::string kManifest =
    R"(<?xml version="1.0" encoding="utf-8"?>
<Package xmlns="http://schemas.microsoft.com/appx/manifest/foundation/windows10">
  <Identity Name="Studio.Game" Publisher="CN=1" Version="1.2.3.0" ProcessorArchitecture="x64" />
  <Properties>
    <DisplayName>Звёздная 星 Saga</DisplayName>
    <PublisherDisplayName>Стýдия</PublisherDisplayName>
    <Logo>Assets\Logo.png</Logo>
  </Properties>
  <Applications>
    <Application Id="App" Executable="Bin\Saga.exe" EntryPoint="Saga.App">
      <VisualElements DisplayName="Other" />
    </Application>
    <Application Id="Tool" Executable="Tool.exe" />
  </Applications>
</Package>
)";

std::tuple<std::string, std::string, std::string, std::string, bool> Fields(const AppxManifest& manifest) {
  return {manifest.displayName, manifest.publisherDisplayName, manifest.executable, manifest.version,
          manifest.isFramework};
}

AppxManifest Application(const std::string& tag) {
  return ParseAppxManifest("<Applications>" + tag + "</Applications>");
}

TEST(AppxManifestReader, ReadsAllFields) {
  const AppxManifest manifest = ParseAppxManifest(kManifest);
  EXPECT_EQ(manifest.displayName, "Звёздная 星 Saga");
  EXPECT_EQ(manifest.publisherDisplayName, "Стýдия");
  EXPECT_EQ(manifest.executable, R"(Bin\Saga.exe)");
  EXPECT_EQ(manifest.version, "1.2.3.0");
  EXPECT_FALSE(manifest.isFramework);
}

TEST(AppxManifestReader, ReadsTheExampleOfItsPage) {
  const AppxManifest manifest = ParseAppxManifest(tests::HexExample("appx-manifest"));
  EXPECT_EQ(manifest.displayName, "Été");
  EXPECT_EQ(manifest.publisherDisplayName, "Atelier");
  EXPECT_EQ(manifest.executable, R"(Bin\Ete.exe)");
  EXPECT_EQ(manifest.version, "1.0.2.0");
  EXPECT_FALSE(manifest.isFramework);
}

TEST(AppxManifestReader, PrefersTheNamesOfTheProperties) {
  const AppxManifest manifest = ParseAppxManifest(
      "<DisplayName>Outside</DisplayName><PublisherDisplayName>Outside</PublisherDisplayName>"
      "<Properties><PublisherDisplayName>In</PublisherDisplayName><DisplayName>Inside</DisplayName></"
      "Properties>");
  EXPECT_EQ(manifest.displayName, "Inside");
  EXPECT_EQ(manifest.publisherDisplayName, "In");
}

TEST(AppxManifestReader, TakesTheFirstNamesOfTheTextWithoutProperties) {
  const AppxManifest manifest = ParseAppxManifest(
      "<DisplayName>One</DisplayName><DisplayName>Two</DisplayName>"
      "<PublisherDisplayName>Three</PublisherDisplayName>");
  EXPECT_EQ(manifest.displayName, "One");
  EXPECT_EQ(manifest.publisherDisplayName, "Three");
}

TEST(AppxManifestReader, TakesUnclosedPropertiesForNone) {
  EXPECT_EQ(ParseAppxManifest("<DisplayName>One</DisplayName><Properties><DisplayName>Two</DisplayName>")
                .displayName,
            "One");
}

TEST(AppxManifestReader, LooksNowhereElseWhereThePropertiesHaveNoName) {
  EXPECT_EQ(ParseAppxManifest("<DisplayName>Outside</DisplayName><Properties></Properties>").displayName, "");
}

TEST(AppxManifestReader, NeverTakesAResourceReferenceForAName) {
  const AppxManifest manifest = ParseAppxManifest(
      "<Properties><DisplayName>ms-resource:AppName</DisplayName>"
      "<PublisherDisplayName>ms-resource:Publisher</PublisherDisplayName></Properties>"
      "<DisplayName>Later</DisplayName>");
  EXPECT_EQ(manifest.displayName, "");
  EXPECT_EQ(manifest.publisherDisplayName, "");
  EXPECT_TRUE(IsResourceReference("ms-resource:"));
  EXPECT_TRUE(IsResourceReference("ms-resource://Studio/Name"));
  EXPECT_FALSE(IsResourceReference("ms-resource"));
  EXPECT_FALSE(IsResourceReference("My ms-resource:x"));
  EXPECT_FALSE(IsResourceReference("MS-RESOURCE:x"));
  EXPECT_FALSE(IsResourceReference(""));
}

TEST(AppxManifestReader, UndoesNoEntities) {
  EXPECT_EQ(ParseAppxManifest("<DisplayName>Tom &amp; Jerry</DisplayName>").displayName, "Tom &amp; Jerry");
  EXPECT_EQ(ParseAppxManifest("<DisplayName> padded </DisplayName>").displayName, " padded ");
}

TEST(AppxManifestReader, ReadsMarkersWithoutAttributesOnly) {
  EXPECT_EQ(
      ParseAppxManifest("<Properties><DisplayName lang=\"en\">A</DisplayName></Properties>").displayName, "");
  EXPECT_EQ(ParseAppxManifest("<displayname>A</displayname>").displayName, "");
}

TEST(AppxManifestReader, TakesTheExecutableOfTheFirstApplication) {
  EXPECT_EQ(Application(R"(<Application Executable="a.exe"/><Application Executable="b.exe"/>)").executable,
            "a.exe");
  EXPECT_EQ(Application(R"(<Application Executable="")").executable, "");
  EXPECT_EQ(Application("<Application\n  Id=\"x\"\r\n\tExecutable=\"игра.exe\"\n>").executable, "игра.exe");
}

TEST(AppxManifestReader, ReadsPastAnAngleBracketInsideAValue) {
  EXPECT_EQ(Application(R"(<Application Id="a>b" Executable="a.exe"></Application>)").executable, "a.exe");
  EXPECT_EQ(Application(R"(<Application Id="a/>b" Executable="a>b.exe"/>)").executable, "a>b.exe");
}

TEST(AppxManifestReader, SearchesTheFirstApplicationToItsEnd) {
  EXPECT_EQ(Application(R"(<Application StartPage="x.html"><Extension Executable="x.exe"/></Application>)")
                .executable,
            "x.exe");
  EXPECT_EQ(Application(R"(<Application Id="A"></Application><Application Executable="b.exe"/>)").executable,
            "");
}

TEST(AppxManifestReader, SearchesAnApplicationWithoutAnEndToTheSections) {
  EXPECT_EQ(Application(R"(<Application Id="A"/><Application Executable="b.exe"/>)").executable, "b.exe");
  EXPECT_EQ(ParseAppxManifest(R"(<Applications><Application Id="A"/></Applications><X Executable="x.exe"/>)")
                .executable,
            "");
}

TEST(AppxManifestReader, TakesNoExecutableFromOutsideTheApplications) {
  EXPECT_EQ(ParseAppxManifest(R"(<Application Executable="a.exe"/>)").executable, "");
  EXPECT_EQ(ParseAppxManifest(R"(<Applications></Applications><Application Executable="a.exe"/>)").executable,
            "");
  EXPECT_EQ(ParseAppxManifest(R"(<Application Executable="a.exe"/><Applications>)").executable, "");
}

TEST(AppxManifestReader, TakesUnclosedApplicationsToTheEnd) {
  EXPECT_EQ(ParseAppxManifest(R"(<Applications><Application Executable="a.exe")").executable, "a.exe");
}

TEST(AppxManifestReader, TakesTheVersionOfTheIdentity) {
  EXPECT_EQ(ParseAppxManifest(R"(<?xml Version="9"?><Identity Version="1.0"/>)").version, "1.0");
  EXPECT_EQ(ParseAppxManifest(R"(<Identity Name="x"/><Target MinVersion="10"/>)").version, "");
}

TEST(AppxManifestReader, KnowsFrameworksAndResourcePackages) {
  const auto isFramework = [](const std::string& inside) {
    return ParseAppxManifest("<Properties>" + inside + "</Properties>").isFramework;
  };
  EXPECT_TRUE(isFramework("<Framework>true</Framework>"));
  EXPECT_TRUE(isFramework("<ResourcePackage>true</ResourcePackage>"));
  EXPECT_FALSE(isFramework("<Framework>false</Framework><ResourcePackage>false</ResourcePackage>"));
  EXPECT_FALSE(isFramework("<Framework></Framework>"));
  EXPECT_FALSE(ParseAppxManifest("<Properties></Properties><Framework>true</Framework>").isFramework);
}

TEST(AppxManifestReader, ReadsPastAByteOrderMark) {
  EXPECT_EQ(Fields(ParseAppxManifest("\xEF\xBB\xBF" + kManifest)), Fields(ParseAppxManifest(kManifest)));
}

// Each field is either empty or, once its closing marker is there, the whole text of one of the manifest's
// elements.
TEST(AppxManifestReader, ReadsWholeFieldsOrNoneOfATruncatedManifest) {
  const AppxManifest whole = ParseAppxManifest(kManifest);
  const auto isWholeOrEmpty = [](const std::string& text, const std::string& full) {
    return text.empty() || text == full;
  };
  for (size_t length = 0; length < kManifest.size(); ++length) {
    const AppxManifest cut = ParseAppxManifest(std::string_view(kManifest).substr(0, length));
    EXPECT_TRUE(isWholeOrEmpty(cut.displayName, whole.displayName)) << length;
    EXPECT_TRUE(isWholeOrEmpty(cut.publisherDisplayName, whole.publisherDisplayName)) << length;
    EXPECT_TRUE(isWholeOrEmpty(cut.executable, whole.executable)) << length;
    EXPECT_TRUE(isWholeOrEmpty(cut.version, whole.version)) << length;
    const bool nameIsClosed = length >= kManifest.find("</DisplayName>") + 14;
    EXPECT_EQ(cut.displayName.empty(), !nameIsClosed) << length;
    const size_t executable = kManifest.find("Executable=\"Bin");
    EXPECT_EQ(cut.executable.empty(), length <= kManifest.find('"', executable + 13)) << length;
  }
}

TEST(AppxManifestReader, FindsNothingInMeaninglessTexts) {
  for (const std::string& text : tests::MeaninglessTexts(kManifest)) {
    EXPECT_EQ(Fields(ParseAppxManifest(text)), Fields({})) << text.substr(0, 20);
  }
}

// Fifty megabytes of a pattern, made from a longer block of it: a piece at a time takes seconds.
std::string Huge(const std::string& pattern) {
  return tests::Repeated(tests::Repeated(pattern, pattern.size() * 4096), tests::kHuge);
}

TEST(AppxManifestReader, ReadsFiftyMegabytesOfOneLine) {
  for (const std::string pattern : {"<", "<Application", "<Properties>", "<DisplayName>", "\"", "x"}) {
    EXPECT_EQ(Fields(ParseAppxManifest(Huge(pattern))), Fields({})) << pattern;
  }
  EXPECT_EQ(ParseAppxManifest(Huge("Executable=") + kManifest).executable, R"(Bin\Saga.exe)");
}

}  // namespace
}  // namespace tarnwick
