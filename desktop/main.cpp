// tarnwick-desktop.exe: builds a described desktop that stays, and removes it later.
#include "common/wide_text.h"
#include "desktop/description.h"
#include "desktop/held_folder.h"
#include "desktop/journal.h"
#include "foundation/windows_api.h"

#include <shellapi.h>

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace {

using namespace tarnwick::desktop;

constexpr int kFailed = 1;
constexpr int kWrongUse = 2;
constexpr uintmax_t kLongestDescription = uintmax_t{128} << 20;

std::filesystem::path PathOf(const std::string& path) { return tarnwick::common::Wide(path); }

std::string ReadFile(const std::string& path) {
  std::ifstream stream(PathOf(path), std::ios::binary);
  if (!stream) throw std::runtime_error("can't open '" + path + "'");
  return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteNewFile(const std::string& path, const std::string& text) {
  std::ofstream stream(PathOf(path), std::ios::binary);
  stream << text;
  stream.close();
  if (!stream) throw std::runtime_error("can't write '" + path + "'");
}

// Before it is read: a description holds whole files, but none so long.
void RefuseTooLong(const std::string& path) {
  std::error_code none;
  const uintmax_t length = std::filesystem::file_size(PathOf(path), none);
  if (!none && length > kLongestDescription)
    throw std::runtime_error("'" + path + "' is " + std::to_string(length >> 20) +
                             " MiB long; a description has at most " +
                             std::to_string(kLongestDescription >> 20) + " MiB");
}

void Build(const std::string& description, const std::string& state) {
  if (std::filesystem::exists(PathOf(state)))
    throw std::runtime_error("'" + state + "' exists: a desktop stands already; remove it first");
  RefuseTooLong(description);
  const std::string json = ReadFile(description);
  Desktop desktop;
  ApplyDescription(desktop, json);
  WriteNewFile(state, StateText(desktop));
  desktop.Keep();
  std::printf("Made %zu things. Their list is in %s.\n", desktop.Made().size(), state.c_str());
}

// The state file stays if something can't be removed, so that removing can be tried again.
void Remove(const std::string& state) {
  Desktop desktop = DesktopFromState(ReadFile(state));
  const size_t count = desktop.Made().size();
  desktop.Remove();
  std::filesystem::remove(PathOf(state));
  std::printf("Removed %zu things.\n", count);
}

// The arguments as UTF-8, last first, as the parser takes them: those of main are in the ANSI code page.
std::vector<std::string> Arguments() {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int number = count - 1; number > 0; --number)
    arguments.push_back(tarnwick::common::Narrow(wide[number]));
  LocalFree(wide);
  return arguments;
}

}  // namespace

int main() {
  SetConsoleOutputCP(CP_UTF8);
  CLI::App app(
      "Builds a desktop - registry keys, files, executables - from a description, and removes it again.",
      "tarnwick-desktop");
  app.footer(
      "Set TARNWICK_THROWAWAY_MACHINE=1: the machine must be one that may be spoilt.\n"
      "Exit code: 0 done, 1 failed, 2 wrong command line.");
  app.require_subcommand(1);
  std::string description;
  std::string state = "tarnwick-desktop-state.json";
  CLI::App* build = app.add_subcommand("build", "Build a desktop that stays");
  build
      ->add_option("DESCRIPTION", description,
                   "The description or captured machine, a JSON file (docs/desktop.md)")
      ->required();
  build->add_option("--state", state, "Where to list what was made")->capture_default_str();
  CLI::App* remove = app.add_subcommand("remove", "Remove exactly what a build made");
  remove->add_option("--state", state, "The list that the build left")->capture_default_str();
  std::string held;
  // For the builder's own use: it starts this for each folder that can't be listed.
  CLI::App* hold = app.add_subcommand("hold")->group("");
  hold->add_option("FOLDER", held)->required();
  try {
    app.parse(Arguments());
    if (*build) Build(description, state);
    if (*remove) Remove(state);
    if (*hold) HoldFolderHere(held);
    return 0;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kWrongUse;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tarnwick-desktop: %s\n", error.what());
    return kFailed;
  }
}
