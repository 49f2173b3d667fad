#pragma once
// What the command line asks for. All texts are UTF-8.

#include <cstdint>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tarnwick::host {

enum class Format { kTable, kJson, kNdjson, kCsv, kHtml, kXml };

// Icons of a page, in CSS pixels: on screen, and the most that is stored of each.
inline constexpr int32_t kDefaultIconSize = 56;

struct Options {
  std::string command;  // its words, such as "scan" or "catalogue encipher"
  Format format = Format::kTable;
  std::string output;   // a file's path; empty for the standard output
  bool log = false;     // the library's log goes to the standard error
  std::string logFile;  // the log goes to this file too; empty for none
  bool icons = false;   // also in ndjson, which has none otherwise
  bool noIcons = false;
  int32_t iconSize = kDefaultIconSize;

  std::string catalogue;  // scan, explain, capture: empty lets the library look in the current folder
  std::string machine;    // scan, apps: the machine's name in ndjson; empty for the one that Windows tells
  bool noMachine = false;
  std::string filter;  // apps
  int32_t page = 1;
  bool pageAsked = false;  // --page or --page-size was given
  int32_t pageSize = 20;
  bool all = false;
  std::string input;  // find: the request file; details: the executable; explain: the name or path; diff: the
                      // older scan; completion: the shell; encipher, decipher: the file to read
  std::string application;   // explain: the application's name, where one is asked for instead
  bool verbose = false;      // explain
  std::string secondInput;   // diff, catalogue merge, catalogue diff
  int32_t intervalMs = 200;  // watch
  int32_t durationMs = 0;    // watch: 0 goes on until Ctrl+C
  bool list = false;         // capture: tells what would be written
  bool withApps = false;     // capture: all applications
  bool strict = false;       // catalogue check
};

// Exit codes of the program.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;  // the work could not be done
inline constexpr int kExitUsage = 2;    // the command line was wrong

// Gives `app` every command with its options; a parse then writes into `options`, which must outlive it.
void DefineCommandLine(CLI::App& app, Options& options);

// Reads the command line (without the program's name). True: `options` says what to do. False: help or
// version was printed, or an error was explained, and `exitCode` is the program's.
bool ParseOptions(const std::vector<std::string>& arguments, Options& options, int& exitCode);

}  // namespace tarnwick::host
