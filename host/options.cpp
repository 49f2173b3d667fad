// The command line, by CLI11.
#include "host/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <sstream>

#include "host/console.h"

namespace tarnwick::host {
namespace {

const std::map<std::string, Format> kTableOrJson = {{"table", Format::kTable}, {"json", Format::kJson}};
const std::map<std::string, Format> kAnyFormat = {
    {"table", Format::kTable}, {"json", Format::kJson}, {"html", Format::kHtml}};

void AddFormat(CLI::App& command, Options& options, const std::map<std::string, Format>& formats) {
  const bool html = formats.count("html") > 0;
  command
      .add_option_function<std::string>(
          "--format", [&options, &formats](const std::string& name) { options.format = formats.at(name); },
          html ? "table (default), json, or html: one self-contained page" : "table (default) or json")
      ->check(CLI::IsMember(&formats, CLI::ignore_case));
}

void AddOutput(CLI::App& command, Options& options) {
  command.add_option("-o,--output", options.output, "Write to this file instead of the standard output");
  command.add_flag("--log", options.log, "Show the library's log on the standard error");
}

void AddScan(CLI::App& app, Options& options) {
  CLI::App* scan = app.add_subcommand("scan", "Find the installed games");
  scan->add_option(
      "CATALOGUE", options.catalogue,
      "The catalogue file; without it MasterGameList_decrypted.xml or MasterGameList.xml in the current "
      "folder is used");
  AddFormat(*scan, options, kAnyFormat);
  AddOutput(*scan, options);
}

void AddApps(CLI::App& app, Options& options) {
  CLI::App* apps = app.add_subcommand("apps", "List the installed applications");
  apps->add_option("--filter", options.filter, "Only those with this text in their name or publisher");
  CLI::Option* page = apps->add_option("--page", options.page, "Which page, from 1");
  CLI::Option* size = apps->add_option("--page-size", options.pageSize, "Applications on a page");
  page->check(CLI::PositiveNumber);
  size->check(CLI::PositiveNumber);
  apps->add_flag("--all", options.all, "All of them at once")->excludes(page)->excludes(size);
  AddFormat(*apps, options, kAnyFormat);
  AddOutput(*apps, options);
}

void AddLookups(CLI::App& app, Options& options) {
  CLI::App* find = app.add_subcommand("find", "Look up given games among the installed applications");
  find->add_option("REQUEST", options.input,
                   "A JSON file: an array of objects with name, exeName and exePath")
      ->required();
  AddFormat(*find, options, kTableOrJson);
  AddOutput(*find, options);

  CLI::App* details = app.add_subcommand("details", "Name, icon and path of one executable");
  details->add_option("PATH", options.input, "The executable")->required();
  AddFormat(*details, options, kTableOrJson);
  AddOutput(*details, options);
}

void AddWatch(CLI::App& app, Options& options) {
  CLI::App* watch =
      app.add_subcommand("watch", "Print the foreground process each time it changes, until Ctrl+C");
  watch->add_option("--interval", options.intervalMs, "Milliseconds between looks; below 50 means 200");
  watch->add_option("--for", options.durationMs, "End after this many milliseconds")
      ->check(CLI::PositiveNumber);
  AddFormat(*watch, options, kTableOrJson);
  watch->add_flag("--log", options.log, "Show the library's log on the standard error");
}

void AddCatalogue(CLI::App& app, Options& options) {
  CLI::App* catalogue = app.add_subcommand("catalogue", "For maintainers: encipher or decipher a catalogue");
  catalogue->require_subcommand(1);
  for (const char* name : {"encipher", "decipher"}) {
    CLI::App* step =
        catalogue->add_subcommand(name, std::string("Write the ") + name + "ed form of a catalogue");
    step->add_option("FILE", options.input, "The catalogue to read")->required();
    step->add_option("-o,--output", options.output, "The file to write")->required();
  }
}

std::string ChosenCommand(const CLI::App& app) {
  const CLI::App* chosen = app.get_subcommands().front();
  return chosen->get_subcommands().empty() ? chosen->get_name()
                                           : chosen->get_subcommands().front()->get_name();
}

}  // namespace

bool ParseOptions(const std::vector<std::string>& arguments, Options& options, int& exitCode) {
  CLI::App app("Tarnwick: what is installed on this desktop, and what is in the foreground.", "tarnwick");
  app.set_version_flag("--version", "tarnwick " TARNWICK_VERSION);
  app.require_subcommand(1);
  AddScan(app, options);
  AddApps(app, options);
  AddLookups(app, options);
  AddWatch(app, options);
  AddCatalogue(app, options);
  try {
    // The parser takes its arguments last first.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    options.command = ChosenCommand(app);
    return true;
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    exitCode = app.exit(error, out, err) == 0 ? kExitSuccess : kExitUsage;
    WriteStandardOutput(out.str());
    WriteStandardError(err.str());
    return false;
  }
}

}  // namespace tarnwick::host
