#include "host/manual/manual_page.h"

#include <fmt/format.h>

#include "tarnwick/version.h"

namespace tarnwick::host {
namespace {

constexpr const char* kDescription =
    "tells which games and applications are installed on a Windows machine, and which process is in the\n"
    "foreground. Games are recognised by a catalogue.\n"
    ".PP\n"
    "The answer goes to the standard output or to a file; all else that is said goes to the standard "
    "error.\n";

constexpr const char* kSeeAlso =
    "The pages docs/command\\-line.md and docs/outputs.md, and the JSON Schemas in docs/schemas, tell what\n"
    "scripts may count on.\n";

// A line that begins with a dot or an apostrophe would be a request; a bare hyphen may become a dash.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    if (letter == '\\')
      escaped += "\\e";
    else if (letter == '-')
      escaped += "\\-";
    else
      escaped += letter;
  }
  return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string Bold(const std::string& text) { return "\\fB" + Escaped(text) + "\\fR"; }

std::string Italic(const std::string& text) { return "\\fI" + Escaped(text) + "\\fR"; }

std::string Argument(const OptionDefinition& argument) {
  return argument.required ? Italic(argument.names[0]) : "[" + Italic(argument.names[0]) + "]";
}

std::string Names(const OptionDefinition& option) {
  if (option.positional) return Italic(option.names[0]);
  std::vector<std::string> names;
  for (const std::string& name : option.names) names.push_back(Bold(name));
  const std::string value = option.value.empty() ? "" : " " + Italic(option.value);
  return fmt::format("{}{}", fmt::join(names, ", "), value);
}

// "tarnwick scan [CATALOGUE] [options]"
std::string Usage(const CommandDefinition& command) {
  std::string usage = Bold(command.words.empty() ? "tarnwick" : "tarnwick " + command.words);
  if (!command.subcommands.empty()) usage += " " + Italic("COMMAND");
  for (const OptionDefinition& option : command.options) {
    if (option.positional) usage += " " + Argument(option);
  }
  return usage + " [" + Italic("options") + "]\n";
}

std::string OptionText(const OptionDefinition& option) {
  std::string text = ".TP\n" + Names(option) + "\n" + Escaped(option.help);
  if (!option.choices.empty()) text += Escaped(fmt::format(" (one of {})", fmt::join(option.choices, ", ")));
  if (option.required && !option.positional) text += " (required)";
  return text + "\n";
}

std::string OptionTexts(const CommandDefinition& command) {
  std::string text;
  for (const OptionDefinition& option : command.options) text += OptionText(option);
  return text;
}

std::string CommandText(const CommandDefinition& command) {
  return ".SS \"" + Escaped(command.words) + "\"\n" + Usage(command) + ".PP\n" + Escaped(command.help) +
         ".\n" + OptionTexts(command);
}

}  // namespace

std::string ManualPage(const std::vector<CommandDefinition>& commands) {
  const CommandDefinition& program = commands.front();
  std::string page = ".TH TARNWICK 1 \"\" \"tarnwick " TARNWICK_VERSION "\" \"User Commands\"\n";
  page += ".SH NAME\ntarnwick \\- what is installed on this desktop, and what is in the foreground\n";
  page += ".SH SYNOPSIS\n" + Usage(program);
  page += ".SH DESCRIPTION\n" + Bold("tarnwick") + "\n" + kDescription;
  page += ".SH OPTIONS\n" + OptionTexts(program);
  page += ".SH COMMANDS\n";
  for (size_t at = 1; at < commands.size(); ++at) page += CommandText(commands[at]);
  page += ".SH EXIT STATUS\n" + Escaped(program.footer) + ".\n";
  page += ".SH SEE ALSO\n" + std::string(kSeeAlso);
  return page;
}

}  // namespace tarnwick::host
