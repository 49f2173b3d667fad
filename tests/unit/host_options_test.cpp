#include "host/options.h"

#include "support/standard_stream.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <regex>

namespace tarnwick::host {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kHint = "Run with --help for more information.\n";

struct Parsed {
  bool ok = false;
  int exitCode = -1;
  Options options;
  std::string output;
  std::string errors;
};

Parsed Parse(const std::vector<std::string>& arguments) {
  Parsed parsed;
  tests::StandardStream output(STD_OUTPUT_HANDLE);
  tests::StandardStream errors(STD_ERROR_HANDLE);
  parsed.ok = ParseOptions(arguments, parsed.options, parsed.exitCode);
  parsed.output = output.Text();
  parsed.errors = errors.Text();
  return parsed;
}

std::string UsageError(const std::vector<std::string>& arguments) {
  const Parsed parsed = Parse(arguments);
  EXPECT_FALSE(parsed.ok);
  EXPECT_EQ(parsed.exitCode, kExitUsage);
  EXPECT_EQ(parsed.output, "");
  return parsed.errors;
}

TEST(HostOptions, AFormatIsTakenInAnyLetterCaseByEveryCommand) {
  const std::vector<std::vector<std::string>> commands = {
      {"scan"}, {"apps"}, {"find", "request.json"}, {"details", "game.exe"}, {"watch"}, {"explain", "Foo"}};
  for (std::vector<std::string> arguments : commands) {
    arguments.insert(arguments.end(), {"--format", "json"});
    for (const char* name : {"json", "JSON", "Json", "jSoN"}) {
      arguments.back() = name;
      const Parsed parsed = Parse(arguments);
      EXPECT_TRUE(parsed.ok) << parsed.errors;
      EXPECT_EQ(parsed.options.format, Format::kJson) << arguments[0] << ' ' << name;
    }
    arguments.back() = "TABLE";
    EXPECT_EQ(Parse(arguments).options.format, Format::kTable);
  }
}

TEST(HostOptions, EveryFormatHasItsName) {
  EXPECT_EQ(Parse({"scan", "--format", "HTML"}).options.format, Format::kHtml);
  EXPECT_EQ(Parse({"scan", "--format", "NDJson"}).options.format, Format::kNdjson);
  EXPECT_EQ(Parse({"find", "x", "--format", "Csv"}).options.format, Format::kCsv);
  EXPECT_EQ(Parse({"scan"}).options.format, Format::kTable);
}

TEST(HostOptions, ACaptureNeedsAFileUnlessItIsOnlyListed) {
  EXPECT_THAT(UsageError({"capture"}), HasSubstr("--output"));
  EXPECT_THAT(UsageError({"capture", "list.xml"}), HasSubstr("--output"));
  EXPECT_TRUE(Parse({"capture", "--list"}).options.list);
  const Parsed parsed = Parse({"capture", "-o", "machine.json", "list.xml", "--with-apps"});
  EXPECT_TRUE(parsed.ok);
  EXPECT_EQ(parsed.options.command, "capture");
  EXPECT_EQ(parsed.options.output, "machine.json");
  EXPECT_EQ(parsed.options.catalogue, "list.xml");
  EXPECT_TRUE(parsed.options.withApps);
}

TEST(HostOptions, AFormatThatACommandDoesNotHaveIsAUsageError) {
  EXPECT_THAT(UsageError({"find", "x", "--format", "html"}), HasSubstr("--format"));
  EXPECT_THAT(UsageError({"watch", "--format", "csv"}), HasSubstr("--format"));
  EXPECT_THAT(UsageError({"scan", "--format", ""}), HasSubstr("--format"));
}

TEST(HostOptions, AMisspeltCommandNamesTheOneThatWasMeant) {
  EXPECT_EQ(UsageError({"scna"}),
            std::string("tarnwick: unknown command 'scna'; did you mean 'scan'?\n") + kHint);
  EXPECT_THAT(UsageError({"detials", "C:\\a.exe"}), HasSubstr("did you mean 'details'?\n"));
  EXPECT_THAT(UsageError({"catalogue", "enciper", "a", "-o", "b"}), HasSubstr("did you mean 'encipher'?\n"));
}

TEST(HostOptions, AWordThatIsNearToNoCommandNamesNone) {
  EXPECT_EQ(UsageError({"bogus"}), std::string("tarnwick: unknown command 'bogus'\n") + kHint);
  EXPECT_EQ(UsageError({"x"}), std::string("tarnwick: unknown command 'x'\n") + kHint);
}

TEST(HostOptions, EveryUsageErrorIsOneLineAndTheHint) {
  const std::vector<std::vector<std::string>> wrong = {{},
                                                       {""},
                                                       {"--no-such"},
                                                       {"scan", "--no-such"},
                                                       {"scan", "a", "b"},
                                                       {"scan", "--format"},
                                                       {"scan", "--format",
                                                        "p\nd\x1b"
                                                        "f"},
                                                       {"scan", "-o"},
                                                       {"find"},
                                                       {"details"},
                                                       {"apps", "--all", "--page", "2"},
                                                       {"watch", "--for", "soon"},
                                                       {"catalogue"},
                                                       {"catalogue", "encipher", "x"}};
  for (const std::vector<std::string>& arguments : wrong) {
    const std::string errors = UsageError(arguments);
    EXPECT_THAT(errors, StartsWith("tarnwick: "));
    EXPECT_THAT(errors, testing::EndsWith(std::string("\n") + kHint));
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 2) << errors;
    EXPECT_THAT(errors, Not(HasSubstr("\x1b")));
  }
}

struct Number {
  const char* command;
  const char* option;
  const char* value;
  const char* says;
};

TEST(HostOptions, ANumberOutOfItsRangeIsToldItsLimit) {
  const Number wrong[] = {{"apps", "--page", "0", "must be 1 or more"},
                          {"apps", "--page", "-3", "must be 1 or more"},
                          {"apps", "--page", "2147483648", "is too large"},
                          {"apps", "--page-size", "0", "must be 1 or more"},
                          {"apps", "--page-size", "99999999999999999999999", "is too large"},
                          {"apps", "--page-size", "-99999999999999999999999", "must be 1 or more"},
                          {"watch", "--for", "0", "must be 1 or more"},
                          {"watch", "--interval", "-1", "must be 0 or more"},
                          {"watch", "--interval", "2147483648", "is too large"},
                          {"scan", "--icon-size", "15", "must be from 16 to 256"},
                          {"apps", "--icon-size", "257", "must be from 16 to 256"},
                          {"scan", "--icon-size", "99999999999999999999999", "must be from 16 to 256"}};
  for (const Number& number : wrong) {
    EXPECT_EQ(UsageError({number.command, number.option, number.value}),
              std::string("tarnwick: ") + number.option + ": " + number.says + "\n" + kHint);
  }
}

TEST(HostOptions, WhatIsNoWholeNumberIsNoNumber) {
  for (const char* text : {"", " ", "x", "1x", "1.5", "0x10", "1e3", "--1", "1 2"}) {
    EXPECT_THAT(UsageError({"apps", "--page", text}), HasSubstr("--page: must be a whole number\n")) << text;
  }
}

TEST(HostOptions, NumbersUpToTheirLimitsAreTaken) {
  EXPECT_EQ(Parse({"apps", "--page", "1"}).options.page, 1);
  EXPECT_EQ(Parse({"apps", "--page", "2147483647"}).options.page, 2147483647);
  EXPECT_EQ(Parse({"apps", "--page-size", "007"}).options.pageSize, 7);
  EXPECT_EQ(Parse({"scan", "--icon-size", "16"}).options.iconSize, 16);
  EXPECT_EQ(Parse({"scan", "--icon-size", "256"}).options.iconSize, 256);
  EXPECT_EQ(Parse({"watch", "--interval", "0", "--for", "1"}).options.intervalMs, 0);
}

TEST(HostOptions, NoHelpNamesALimitThatNobodyWouldType) {
  const std::vector<std::vector<std::string>> commands = {
      {}, {"scan"}, {"apps"}, {"find"}, {"details"}, {"watch"}, {"catalogue"}, {"catalogue", "encipher"}};
  for (std::vector<std::string> arguments : commands) {
    arguments.push_back("--help");
    const Parsed parsed = Parse(arguments);
    EXPECT_FALSE(parsed.ok);
    EXPECT_EQ(parsed.exitCode, kExitSuccess);
    EXPECT_EQ(parsed.errors, "");
    EXPECT_FALSE(std::regex_search(parsed.output, std::regex("[0-9]{5}"))) << parsed.output;
    EXPECT_THAT(parsed.output, HasSubstr("Exit codes"));
  }
}

TEST(HostOptions, AnArgumentThatBeginsWithASlashIsAPath) {
  EXPECT_EQ(Parse({"scan", "/games/list.xml"}).options.catalogue, "/games/list.xml");
  EXPECT_EQ(Parse({"details", "/log"}).options.input, "/log");
  EXPECT_EQ(Parse({"find", "/h"}).options.input, "/h");
  EXPECT_EQ(Parse({"scan", "-o", "/tmp/games.json"}).options.output, "/tmp/games.json");
}

TEST(HostOptions, ExplainWantsANameAndTakesACatalogue) {
  const Parsed parsed = Parse({"explain", "Foo 2", "games.xml", "--verbose"});
  EXPECT_TRUE(parsed.ok);
  EXPECT_EQ(parsed.options.command, "explain");
  EXPECT_EQ(parsed.options.input, "Foo 2");
  EXPECT_EQ(parsed.options.catalogue, "games.xml");
  EXPECT_TRUE(parsed.options.verbose);
  EXPECT_THAT(UsageError({"explain"}), HasSubstr("NAME"));
  EXPECT_THAT(UsageError({"explain", ""}), HasSubstr("is empty"));
  EXPECT_THAT(UsageError({"explain", "Foo", "--format", "csv"}), HasSubstr("csv"));
}

TEST(HostOptions, ACommandIsAllOfItsWords) {
  EXPECT_EQ(Parse({"diff", "a", "b"}).options.command, "diff");
  EXPECT_EQ(Parse({"catalogue", "diff", "a", "b"}).options.command, "catalogue diff");
  EXPECT_EQ(Parse({"catalogue", "import", "steam"}).options.command, "catalogue import steam");
}

TEST(HostOptions, TheMachinesNameIsGivenOrLeftOut) {
  EXPECT_EQ(Parse({"scan", "--machine", "desk-7"}).options.machine, "desk-7");
  EXPECT_TRUE(Parse({"apps", "--no-machine"}).options.noMachine);
  EXPECT_THAT(UsageError({"scan", "--machine", "a", "--no-machine"}), HasSubstr("--no-machine"));
  EXPECT_THAT(UsageError({"scan", "--machine", ""}), HasSubstr("is empty"));
  EXPECT_THAT(UsageError({"scan", "--icons", "--no-icons"}), HasSubstr("--icons"));
}

TEST(HostOptions, HelpThatCanNotBeWrittenIsAnError) {
  tests::StandardStream output(STD_OUTPUT_HANDLE);
  output.LoseReader();
  Options options;
  int exitCode = 0;
  EXPECT_THROW(ParseOptions({"--help"}, options, exitCode), std::runtime_error);
}

}  // namespace
}  // namespace tarnwick::host
