// tarnwick catalogue check and fix, from the command line to their output.
#include "catalogue/decipher.h"
#include "desktop/desktop.h"
#include "host/catalogue/check_file.h"
#include "host/catalogue/check_text.h"
#include "host/commands.h"
#include "host/console.h"
#include "host/failure.h"
#include "support/catalogue_text_parts.h"
#include "support/file_bytes.h"
#include "support/standard_stream.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using tests::CatalogueOf;
using tests::Element;
using tests::GoodRecord;

const std::string kFolder = R"(C:\TarnwickTest\CatalogueCheck)";
const std::string kFile = kFolder + R"(\Каталог.xml)";
const std::string kOut = kFolder + R"(\out.xml)";

struct Ran {
  int exitCode = -1;
  std::string output;
  std::string errors;
};

Ran Tarnwick(const std::vector<std::string>& arguments) {
  Ran ran;
  tests::StandardStream output(STD_OUTPUT_HANDLE);
  tests::StandardStream errors(STD_ERROR_HANDLE);
  ran.exitCode = RunReportingFailures([&] {
    Options options;
    int exitCode = kExitSuccess;
    if (!ParseOptions(arguments, options, exitCode)) return exitCode;
    return options.command == "catalogue fix" ? RunCatalogueFix(options) : RunCatalogueCheck(options);
  });
  ran.output = output.Text();
  ran.errors = errors.Text();
  return ran;
}

desktop::Desktop World(const std::string& bytes) {
  desktop::Desktop world;
  world.File(kFile, bytes);
  world.File(kOut, "");
  return world;
}

std::string Enciphered(const std::string& text) {
  std::vector<unsigned char> bytes(text.begin(), text.end());
  EXPECT_TRUE(EncipherCatalogue(bytes));
  return {bytes.begin(), bytes.end()};
}

TEST(CatalogueCheckCommand, ACleanCatalogueGives0) {
  const desktop::Desktop world = World(CatalogueOf(GoodRecord()));
  const Ran ran = Tarnwick({"catalogue", "check", kFile});
  EXPECT_EQ(ran.exitCode, kExitSuccess);
  EXPECT_EQ(ran.output, "");
  EXPECT_EQ(ran.errors, "tarnwick: " + kFile + ": no errors, no warnings in 1 record\n");
}

TEST(CatalogueCheckCommand, LinesAreWrittenAsCompilersDo) {
  const desktop::Desktop world = World("<Games>\n" + GoodRecord(Element("SourceEx", "Steem")) + "\n</Games>");
  const Ran ran = Tarnwick({"catalogue", "check", kFile});
  EXPECT_EQ(ran.exitCode, kExitFailure);
  EXPECT_THAT(ran.output,
              testing::StartsWith(kFile + ":2:143: error[TC009]: Fernpad: SourceEx 'Steem' is no source"));
  EXPECT_THAT(ran.errors, HasSubstr("1 error, no warnings in 1 record"));
}

TEST(CatalogueCheckCommand, StrictTakesWarningsForErrors) {
  const desktop::Desktop world = World(CatalogueOf(GoodRecord("", " A")));
  const Ran lenient = Tarnwick({"catalogue", "check", kFile});
  EXPECT_EQ(lenient.exitCode, kExitSuccess);
  EXPECT_THAT(lenient.output, HasSubstr(": warning[TC106]: "));
  const Ran strict = Tarnwick({"catalogue", "check", kFile, "--strict"});
  EXPECT_EQ(strict.exitCode, kExitFailure);
  EXPECT_THAT(strict.output, HasSubstr(": error[TC106]: "));
  EXPECT_THAT(strict.errors, HasSubstr("1 error, no warnings"));
}

TEST(CatalogueCheckCommand, JsonHasAllMembersInTheirOrder) {
  const desktop::Desktop world = World(CatalogueOf(GoodRecord("", "A\xE4") + GoodRecord("", " B")));
  const Ran ran = Tarnwick({"catalogue", "check", kFile, "--format", "json"});
  const auto rows = nlohmann::ordered_json::parse(ran.output);
  ASSERT_EQ(rows.size(), 2u);
  std::vector<std::string> members;
  for (const auto& member : rows[1].items()) members.push_back(member.key());
  EXPECT_EQ(members, (std::vector<std::string>{"file", "line", "column", "severity", "code", "record",
                                               "message", "hint"}));
  EXPECT_EQ(rows[0]["code"], "TC007");
  EXPECT_EQ(rows[1]["record"], "B");
  EXPECT_EQ(rows[1]["severity"], "warning");
  EXPECT_EQ(Tarnwick({"catalogue", "check", kOut, "--format", "json"}).output.substr(0, 2), "[{");
}

TEST(CatalogueCheckCommand, AnEncipheredCatalogueIsDecipheredFirst) {
  const desktop::Desktop world = World(Enciphered("<A>\n\n" + GoodRecord("", " A") + "</A>"));
  EXPECT_THAT(Tarnwick({"catalogue", "check", kFile}).output, HasSubstr(":3:"));
}

TEST(CatalogueCheckCommand, AWrongCommandLineGives2AndAMissingFile1) {
  EXPECT_EQ(Tarnwick({"catalogue", "check"}).exitCode, kExitUsage);
  EXPECT_EQ(Tarnwick({"catalogue", "check", "x", "--format", "table"}).exitCode, kExitUsage);
  EXPECT_EQ(Tarnwick({"catalogue", "fix", "x"}).exitCode, kExitUsage);
  const Ran ran = Tarnwick({"catalogue", "check", kFolder + "\\none.xml"});
  EXPECT_EQ(ran.exitCode, kExitFailure);
  EXPECT_THAT(ran.errors, HasSubstr("does not exist"));
}

TEST(CatalogueCheckCommand, OfFaultsOfTheXmlTheFirstIsTold) {
  const std::string text = "<A><B></C> & </A>" + GoodRecord();
  const Findings findings = CheckWholeText(text);
  ASSERT_EQ(findings.list.size(), 1u);
  EXPECT_EQ(findings.list.front().check, kNotWellFormed);
  EXPECT_LT(findings.list.front().at, text.find('&'));
}

TEST(CatalogueCheckCommand, AFileBeyondTheLimitIsNotRead) {
  const desktop::Desktop world = World("x");
  std::filesystem::resize_file(std::filesystem::path(Widen(kFile)), 500u << 20);
  EXPECT_THAT(Tarnwick({"catalogue", "check", kFile}).output,
              HasSubstr("error[TC016]: the file has 500 MiB; at most 64 MiB"));
  EXPECT_THAT(Tarnwick({"catalogue", "fix", kFile, "-o", kOut}).errors, HasSubstr("500 MiB"));
  EXPECT_EQ(ReadCatalogueText(kFile).text, "");
}

TEST(CatalogueFixCommand, SaysWhatItDidAndWhatIsLeft) {
  const desktop::Desktop world = World("<A>\n" + GoodRecord("", " A") + GoodRecord("", "A") +
                                       GoodRecord(Element("SourceEx", "x"), "B") + "</A>");
  const Ran ran = Tarnwick({"catalogue", "fix", kFile, "-o", kOut});
  EXPECT_EQ(ran.exitCode, kExitSuccess);
  EXPECT_EQ(ran.output, "");
  EXPECT_THAT(ran.errors,
              HasSubstr(kFile + ":2:112: fixed[TC106]: A: DisplayName is written as it is read, 'A'\n"));
  EXPECT_THAT(ran.errors, HasSubstr("1 text trimmed, 1 equal record left out\n"));
  EXPECT_THAT(ran.errors, HasSubstr(kOut + ":2:"));
  EXPECT_THAT(ran.errors, HasSubstr("1 error, no warnings in 2 records are left\n"));
}

TEST(CatalogueFixCommand, AFixedFileChecksCleanAndTheSecondRunChangesNothing) {
  const std::string text = "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"iso-8859-1\"?><A>" +
                           GoodRecord(Element("SourceExId", "1") + Element("SourceEx", "GOG"), " A  B ") +
                           "</A>";
  const desktop::Desktop world = World(text);
  EXPECT_EQ(Tarnwick({"catalogue", "fix", kFile, "-o", kOut}).exitCode, kExitSuccess);
  EXPECT_EQ(Tarnwick({"catalogue", "check", kOut, "--strict"}).exitCode, kExitSuccess);
  const std::string once = tests::ReadBytes(kOut);
  const desktop::Desktop again = World(once);
  EXPECT_THAT(Tarnwick({"catalogue", "fix", kFile, "-o", kOut}).errors, HasSubstr("nothing to fix"));
  EXPECT_EQ(tests::ReadBytes(kOut), once);
}

TEST(CatalogueFixCommand, KeepsTheEncipheredForm) {
  const desktop::Desktop world = World(Enciphered(CatalogueOf(GoodRecord("", " A"))));
  EXPECT_EQ(Tarnwick({"catalogue", "fix", kFile, "-o", kOut}).exitCode, kExitSuccess);
  EXPECT_EQ(tests::ReadBytes(kOut), Enciphered(CatalogueOf(GoodRecord("", "A"))));
}

TEST(CatalogueFixCommand, RefusesToWriteOverItsInput) {
  const desktop::Desktop world = World(CatalogueOf(GoodRecord()));
  const Ran ran = Tarnwick({"catalogue", "fix", kFile, "-o", kFile});
  EXPECT_EQ(ran.exitCode, kExitFailure);
  EXPECT_THAT(ran.errors, HasSubstr("is the file that is read"));
}

}  // namespace
}  // namespace tarnwick::host
