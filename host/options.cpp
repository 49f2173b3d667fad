// The command line, by CLI11.
#include "host/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>
#include <sstream>
#include <system_error>

#include "host/console.h"
#include "host/edit_distance.h"
#include "host/failure.h"
#include "tarnwick/version.h"

namespace tarnwick::host {
namespace {

// What help calls the value of an option that names a file; shells complete it as one.
constexpr const char* kFile = "FILE";

constexpr int32_t kNoLimit = std::numeric_limits<int32_t>::max();

using FormatNames = std::map<std::string, Format>;

const FormatNames kTableOrJson = {{"table", Format::kTable}, {"json", Format::kJson}};
const FormatNames kTextOrJson = {{"text", Format::kTable}, {"json", Format::kJson}};
const FormatNames kCatalogueFormats = {{"xml", Format::kXml}, {"csv", Format::kCsv}};
const FormatNames kListFormats = {
    {"table", Format::kTable}, {"json", Format::kJson}, {"ndjson", Format::kNdjson}, {"csv", Format::kCsv}};
const FormatNames kAnyFormat = {{"table", Format::kTable},
                                {"json", Format::kJson},
                                {"ndjson", Format::kNdjson},
                                {"csv", Format::kCsv},
                                {"html", Format::kHtml}};

std::string FormatHelp(const FormatNames& formats) {
  if (formats.count("xml") > 0) return "xml or csv; without it the output file's extension says which";
  std::string help = formats.count("text") > 0 ? "text (default) or json" : "table (default) or json";
  if (formats.count("csv") > 0) help = "table (default), json, ndjson (one object a line) or csv";
  if (formats.count("html") > 0)
    help = "table (default), json, ndjson, csv, or html: one self-contained page";
  return help;
}

std::vector<std::string> NamesOf(const FormatNames& formats) {
  std::vector<std::string> names;
  for (const auto& [name, format] : formats) names.push_back(name);
  return names;
}

// A whole number from `least` to `most`. The error names the upper limit only where the option has one.
CLI::Validator WholeNumber(int32_t least, int32_t most = kNoLimit) {
  return CLI::Validator(
      [least, most](std::string& text) -> std::string {
        int64_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error == std::errc::invalid_argument || end != text.data() + text.size())
          return "must be a whole number";
        // A number of more than 64 bits is too small or too large, by its sign.
        const bool readable = error == std::errc();
        const bool small = readable ? number < least : text.starts_with('-');
        if (readable && !small && number <= most) return {};
        if (most < kNoLimit) return "must be from " + std::to_string(least) + " to " + std::to_string(most);
        return small ? "must be " + std::to_string(least) + " or more" : "is too large";
      },
      "");
}

CLI::Validator NotEmpty() {
  return CLI::Validator([](std::string& text) { return std::string(text.empty() ? "is empty" : ""); }, "");
}

void AddFormat(CLI::App& command, Options& options, const FormatNames& formats) {
  command
      .add_option_function<std::string>(
          "--format", [&options, &formats](const std::string& name) { options.format = formats.at(name); },
          FormatHelp(formats))
      // As a transformation the check leaves the name in the spelling of the table, whatever case was typed.
      ->transform(CLI::IsMember(NamesOf(formats), CLI::ignore_case));
}

void AddLog(CLI::App& command, Options& options) {
  command.add_flag("--log", options.log, "Show the library's log on the standard error");
  command.add_option("--log-file", options.logFile, "Write the library's log to this file")->type_name(kFile);
}

void AddOutput(CLI::App& command, Options& options) {
  command.add_option("-o,--output", options.output, "Write to this file instead of the standard output")
      ->type_name(kFile);
  AddLog(command, options);
}

void AddIcons(CLI::App& command, Options& options, bool page) {
  command.add_flag("--no-icons", options.noIcons, "Leave the icons out");
  if (!page) return;
  command
      .add_option("--icon-size", options.iconSize,
                  "Icons of a page, in pixels from 16 to 256 (" + std::to_string(kDefaultIconSize) + ")")
      ->check(WholeNumber(16, 256));
}

// For lists as lines, which somebody gathers from many machines.
void AddLines(CLI::App& command, Options& options) {
  command.add_flag("--icons", options.icons, "Icons in ndjson, too; without it they are empty there")
      ->excludes(command.get_option("--no-icons"));
  CLI::Option* machine =
      command
          .add_option("--machine", options.machine, "The machine's name in ndjson, in place of Windows' own")
          ->check(NotEmpty());
  command.add_flag("--no-machine", options.noMachine, "Leave the machine's name in ndjson empty")
      ->excludes(machine);
}

void AddCatalogueArgument(CLI::App& command, Options& options) {
  command.add_option(
      "CATALOGUE", options.catalogue,
      "The catalogue file; without it MasterGameList_decrypted.xml or MasterGameList.xml in the current "
      "folder is used, or else the starter catalogue that came with the program");
}

void AddScan(CLI::App& app, Options& options) {
  CLI::App* scan = app.add_subcommand("scan", "Find the installed games");
  AddCatalogueArgument(*scan, options);
  AddFormat(*scan, options, kAnyFormat);
  AddIcons(*scan, options, true);
  AddLines(*scan, options);
  AddOutput(*scan, options);
}

void AddApps(CLI::App& app, Options& options) {
  CLI::App* apps = app.add_subcommand("apps", "List the installed applications");
  apps->add_option("--filter", options.filter, "Only those with this text in their name or publisher");
  CLI::Option* page = apps->add_option("--page", options.page, "Which page, from 1");
  CLI::Option* size = apps->add_option("--page-size", options.pageSize, "Applications on a page (20)");
  page->check(WholeNumber(1));
  size->check(WholeNumber(1));
  apps->add_flag("--all", options.all, "All of them at once")->excludes(page)->excludes(size);
  apps->callback([&options, page, size] { options.pageAsked = page->count() + size->count() > 0; });
  AddFormat(*apps, options, kAnyFormat);
  AddIcons(*apps, options, true);
  AddLines(*apps, options);
  AddOutput(*apps, options);
}

void AddLookups(CLI::App& app, Options& options) {
  CLI::App* find = app.add_subcommand("find", "Look up given games among the installed applications");
  find->add_option("REQUEST", options.input,
                   "A JSON file: an array of objects with name, exeName and exePath")
      ->required();
  AddFormat(*find, options, kListFormats);
  AddIcons(*find, options, false);
  AddOutput(*find, options);

  CLI::App* details = app.add_subcommand("details", "Name, icon and path of one executable");
  details->add_option("PATH", options.input, "The executable")->required();
  AddFormat(*details, options, kTableOrJson);
  AddIcons(*details, options, false);
  AddOutput(*details, options);
}

void AddExplain(CLI::App& app, Options& options) {
  CLI::App* explain = app.add_subcommand("explain", "Tell why a game or an application is found or isn't");
  CLI::Option* name = explain->add_option("NAME-OR-PATH", options.input,
                                          "The game's name or a part of it, or an executable or folder");
  explain->add_option("CATALOGUE", options.catalogue, "The catalogue file, as for scan");
  CLI::Option* application =
      explain->add_option("--app", options.application, "An installed application's name or a part of it");
  name->check(NotEmpty())->excludes(application);
  application->check(NotEmpty());
  explain->callback([name, application] {
    if (name->count() + application->count() == 0) throw CLI::RequiredError("NAME-OR-PATH or --app");
  });
  AddFormat(*explain, options, kTextOrJson);
  explain->add_flag("--verbose", options.verbose, "Show every question to the machine with its answer");
  AddOutput(*explain, options);
}

void AddWatch(CLI::App& app, Options& options) {
  CLI::App* watch =
      app.add_subcommand("watch", "Print the foreground process each time it changes, until Ctrl+C");
  watch->add_option("--interval", options.intervalMs, "Milliseconds between looks; below 50 means 200")
      ->check(WholeNumber(0));
  watch->add_option("--for", options.durationMs, "End after this many milliseconds")->check(WholeNumber(1));
  AddFormat(*watch, options, kTableOrJson);
  AddLog(*watch, options);
}

void AddCheckAndFix(CLI::App& catalogue, Options& options) {
  CLI::App* check = catalogue.add_subcommand("check", "Tell what is wrong with a catalogue, and where");
  check->add_option("FILE", options.input, "The catalogue to check")->required();
  AddFormat(*check, options, kTextOrJson);
  check->add_flag("--strict", options.strict, "Take warnings for errors");
  CLI::App* fix = catalogue.add_subcommand("fix", "Write a catalogue anew, with what can be mended mended");
  fix->add_option("FILE", options.input, "The catalogue to read")->required();
  fix->add_option("-o,--output", options.output, "The file to write")->type_name(kFile)->required();
}

void AddCatalogueRecords(CLI::App& catalogue, Options& options) {
  const auto addOutput = [&](CLI::App* step) {
    step->add_option("-o,--output", options.output, "The file to write")->type_name(kFile)->required();
  };
  CLI::App* fromCsv = catalogue.add_subcommand("from-csv", "Write a catalogue of comma-separated values");
  fromCsv->add_option("FILE", options.input, "The file to read; its header names the elements")->required();
  addOutput(fromCsv);
  CLI::App* toCsv = catalogue.add_subcommand("to-csv", "Write a catalogue as comma-separated values");
  toCsv->add_option("FILE", options.input, "The catalogue to read")->required();
  addOutput(toCsv);
  CLI::App* merge = catalogue.add_subcommand("merge", "Write two catalogues as one");
  CLI::App* diff = catalogue.add_subcommand("diff", "Tell how two catalogues differ");
  for (CLI::App* step : {merge, diff}) {
    step->add_option("A", options.input, "The first catalogue")->required();
    step->add_option("B", options.secondInput, "The second catalogue")->required();
  }
  addOutput(merge);
  AddFormat(*diff, options, kTextOrJson);
  CLI::App* show = catalogue.add_subcommand("show", "Print the records of a game");
  show->add_option("NAME", options.input, "Part of the name; letter case and accents don't count")
      ->required();
  show->add_option("CATALOGUE", options.catalogue, "The catalogue file; without it as for scan");
  AddFormat(*show, options, kTextOrJson);
}

void AddCatalogueImport(CLI::App& catalogue, Options& options) {
  CLI::App* import = catalogue.add_subcommand("import", "Make records of what this machine knows");
  import->require_subcommand(1);
  CLI::App* steam = import->add_subcommand("steam", "Of every game that the local Steam knows");
  CLI::App* installed = import->add_subcommand("installed", "Of the games that launchers report here");
  for (CLI::App* step : {steam, installed}) {
    step->add_option("-o,--output", options.output, "Write to this file instead of the standard output")
        ->type_name(kFile);
    AddFormat(*step, options, kCatalogueFormats);
    AddLog(*step, options);
  }
}

void AddCatalogue(CLI::App& app, Options& options) {
  CLI::App* catalogue = app.add_subcommand(
      "catalogue", "For maintainers: check, make, convert, compare and encipher catalogues");
  catalogue->require_subcommand(1);
  AddCheckAndFix(*catalogue, options);
  AddCatalogueRecords(*catalogue, options);
  AddCatalogueImport(*catalogue, options);
  for (const char* name : {"encipher", "decipher"}) {
    CLI::App* step =
        catalogue->add_subcommand(name, std::string("Write the ") + name + "ed form of a catalogue");
    step->add_option("FILE", options.input, "The catalogue to read")->required();
    step->add_option("-o,--output", options.output, "The file to write")->type_name(kFile)->required();
  }
}

void AddCapture(CLI::App& app, Options& options) {
  CLI::App* capture =
      app.add_subcommand("capture", "Write down what a scan of this machine sees, to look at elsewhere");
  AddCatalogueArgument(*capture, options);
  CLI::Option* output =
      capture->add_option("-o,--output", options.output, "The file to write")->type_name(kFile);
  capture->add_flag("--list", options.list, "List what would be written, and write no capture");
  capture->add_flag("--with-apps", options.withApps, "Take the applications that are no games, too");
  capture->callback([&options, output] {
    if (!options.list && output->count() == 0) throw CLI::RequiredError("--output");
  });
  AddLog(*capture, options);
}

void AddDiff(CLI::App& app, Options& options) {
  CLI::App* diff =
      app.add_subcommand("diff", "Tell which games were added, removed or moved between two scans");
  diff->add_option("OLD", options.input, "The older scan, as --format json or ndjson wrote it")->required();
  diff->add_option("NEW", options.secondInput, "The newer scan")->required();
  AddFormat(*diff, options, kTextOrJson);
}

void AddManuals(CLI::App& app, Options& options) {
  CLI::App* completion = app.add_subcommand("completion", "Print what lets a shell complete command lines");
  completion->add_option("SHELL", options.input, "The shell")
      ->required()
      ->transform(CLI::IsMember(std::vector<std::string>{"bash", "powershell"}, CLI::ignore_case));
  app.add_subcommand("manual", "Print this program's manual page, for man");
}

std::string ChosenCommand(const CLI::App& app) {
  const CLI::App* chosen = app.get_subcommands().front();
  std::string words = chosen->get_name();
  while (!chosen->get_subcommands().empty()) {
    chosen = chosen->get_subcommands().front();
    words += " " + chosen->get_name();
  }
  return words;
}

// The subcommand that was probably meant, or an empty text.
std::string NearestCommand(const CLI::App& app, const std::string& typed) {
  constexpr size_t kMostEdits = 2;
  std::string nearest;
  size_t least = kMostEdits + 1;
  for (const CLI::App* command : app.get_subcommands({})) {
    const size_t distance = EditDistance(typed, command->get_name());
    // As many edits as the word has letters would make it any word.
    if (distance >= least || distance >= typed.size()) continue;
    least = distance;
    nearest = command->get_name();
  }
  return nearest;
}

// "unknown command 'scna'; did you mean 'scan'?", if the arguments begin with a word that is no command.
std::string UnknownCommand(const CLI::App& app, const std::vector<std::string>& arguments) {
  const CLI::App* level = &app;
  for (const std::string& word : arguments) {
    if (level->get_subcommands({}).empty() || word.starts_with("-")) return {};
    const std::vector<const CLI::App*> same =
        level->get_subcommands([&](const CLI::App* command) { return command->get_name() == word; });
    if (same.empty()) {
      const std::string nearest = NearestCommand(*level, word);
      return "unknown command '" + word + "'" + (nearest.empty() ? "" : "; did you mean '" + nearest + "'?");
    }
    level = same.front();
  }
  return {};
}

// Prints what the parser has to say and returns the exit code: 0 where help or the version was asked for.
int ExplainParseError(const CLI::App& app, const std::vector<std::string>& arguments,
                      const CLI::ParseError& error) {
  std::ostringstream out;
  std::ostringstream err;
  if (app.exit(error, out, err) == 0) {
    WriteStandardOutput(out.str());
    return kExitSuccess;
  }
  const std::string unknown = UnknownCommand(app, arguments);
  ReportLine(unknown.empty() ? error.what() : unknown);
  WriteStandardError("Run with --help for more information.\n");
  return kExitUsage;
}

}  // namespace

void DefineCommandLine(CLI::App& app, Options& options) {
  app.name("tarnwick");
  app.description("Tarnwick: what is installed on this desktop, and what is in the foreground.");
  app.set_version_flag("--version", "tarnwick " TARNWICK_VERSION);
  // An argument that begins with a slash is a path, as it is under Wine and in many a shell on Windows.
  app.allow_windows_style_options(false);
  app.require_subcommand(1);
  app.footer("Exit codes: 0 done, 1 the work or its output failed, 2 the command line was wrong");
  AddScan(app, options);
  AddApps(app, options);
  AddLookups(app, options);
  AddDiff(app, options);
  AddExplain(app, options);
  AddWatch(app, options);
  AddCatalogue(app, options);
  AddCapture(app, options);
  AddManuals(app, options);
}

bool ParseOptions(const std::vector<std::string>& arguments, Options& options, int& exitCode) {
  CLI::App app;
  DefineCommandLine(app, options);
  try {
    // The parser takes its arguments last first.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    options.command = ChosenCommand(app);
    return true;
  } catch (const CLI::ParseError& error) {
    exitCode = ExplainParseError(app, arguments, error);
    return false;
  }
}

}  // namespace tarnwick::host
