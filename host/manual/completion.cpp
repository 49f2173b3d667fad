#include "host/manual/completion.h"

#include <fmt/format.h>

#include <string_view>

namespace tarnwick::host {
namespace {

constexpr std::string_view kBashHead =
    R"sh(# bash completion for tarnwick; "tarnwick completion bash" makes it.
_tarnwick() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} at
  local command='' options='' words='' values=''
  # bash takes "--format=json" for three words.
  if [[ $current == '=' ]]; then current=''
  elif [[ $previous == '=' ]]; then previous=${COMP_WORDS[COMP_CWORD-2]}
  fi
  for ((at = 1; at < COMP_CWORD; at++)); do
    case "$command ${COMP_WORDS[at]}" in
)sh";

constexpr std::string_view kBashValues =
    R"sh( command="${command:+$command }${COMP_WORDS[at]}" ;;
    esac
  done
  COMPREPLY=()
  # What stands behind an option: one of a few words, a file, or what only the user knows.
  case "$command $previous" in
)sh";

constexpr std::string_view kBashWords =
    R"sh(  esac
  if [[ -n $values ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$values" -- "$current")
    return
  fi
  case "$command" in
)sh";

constexpr std::string_view kBashTail =
    R"sh(  esac
  # Without a word to offer, the names of files stand in for an argument.
  if [[ $current == -* ]]; then words=$options; fi
  if [[ -n $words ]]; then mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current"); fi
}
complete -o default -F _tarnwick tarnwick tarnwick.exe
)sh";

constexpr std::string_view kPowerShellHead =
    R"ps(# PowerShell completion for tarnwick; "tarnwick completion powershell" makes it.
Register-ArgumentCompleter -Native -CommandName tarnwick, tarnwick.exe -ScriptBlock {
    param($wordToComplete, $commandAst, $cursorPosition)
    # What can follow each command: its parts, the words that an argument takes, its options.
    $following = @{
)ps";

constexpr std::string_view kPowerShellValues =
    R"ps(    }
    # What stands behind an option: one of a few words, or nothing that is known here; then files are offered.
    $values = @{
)ps";

constexpr std::string_view kPowerShellTail =
    R"ps(    }
    $command = ''
    $previous = ''
    foreach ($element in ($commandAst.CommandElements | Select-Object -Skip 1)) {
        if ($element.Extent.EndOffset -ge $cursorPosition) { break }
        $previous = $element.Extent.Text
        $longer = "$command $previous".Trim()
        if ($following.ContainsKey($longer)) { $command = $longer }
    }
    $behind = "$command $previous".Trim()
    if ($values.ContainsKey($behind)) { $offered = $values[$behind] } else { $offered = $following[$command] }
    foreach ($word in $offered.Keys) {
        # Options are offered once a hyphen is typed.
        if (-not $word.StartsWith($wordToComplete)) { continue }
        if ($word.StartsWith('-') -and -not $wordToComplete.StartsWith('-')) { continue }
        [System.Management.Automation.CompletionResult]::new($word, $word, 'ParameterValue', $offered[$word])
    }
}
)ps";

std::string Joined(const std::vector<std::string>& words) { return fmt::format("{}", fmt::join(words, " ")); }

// "catalogue diff" as the case of its last word behind those before it, which may be none.
std::string BashCase(const std::string& words) {
  const size_t blank = words.rfind(' ');
  return blank == std::string::npos ? " " + words : words;
}

std::string BashCommands(const std::vector<CommandDefinition>& commands) {
  std::string cases;
  for (const CommandDefinition& command : commands) {
    if (!command.words.empty())
      cases += (cases.empty() ? "" : " |\\\n") + ("      '" + BashCase(command.words)) + "'";
  }
  return cases + ")";
}

std::string BashValues(const CommandDefinition& command) {
  std::string cases;
  for (const OptionDefinition& option : command.options) {
    if (option.positional || option.value.empty()) continue;
    std::vector<std::string> patterns;
    for (const std::string& name : option.names)
      patterns.push_back(fmt::format("'{} {}'", command.words, name));
    std::string action = fmt::format("values='{}'", Joined(option.choices));
    if (option.choices.empty()) action = option.value == "FILE" ? "return" : "compopt +o default; return";
    cases += fmt::format("    {}) {} ;;\n", fmt::join(patterns, " | "), action);
  }
  return cases;
}

std::string BashWords(const CommandDefinition& command) {
  std::vector<std::string> options;
  std::vector<std::string> words = command.subcommands;
  for (const OptionDefinition& option : command.options) {
    std::vector<std::string>& list = option.positional ? words : options;
    const std::vector<std::string>& more = option.positional ? option.choices : option.names;
    list.insert(list.end(), more.begin(), more.end());
  }
  return fmt::format("    '{}')\n      words='{}'\n      options='{}'\n      ;;\n", command.words,
                     Joined(words), Joined(options));
}

// A text of PowerShell that is taken as it stands.
std::string Literal(const std::string& text) {
  std::string literal = "'";
  for (const char letter : text) literal += letter == '\'' ? "''" : std::string(1, letter);
  return literal + "'";
}

std::string Entry(const std::string& word, const std::string& help) {
  return fmt::format("            {} = {}\n", Literal(word), Literal(help.empty() ? word : help));
}

std::string PowerShellFollowing(const CommandDefinition& command,
                                const std::vector<CommandDefinition>& commands) {
  const std::string start = command.words.empty() ? "" : command.words + " ";
  std::string entries;
  for (const CommandDefinition& part : commands) {
    for (const std::string& word : command.subcommands) {
      if (part.words == start + word) entries += Entry(word, part.help);
    }
  }
  for (const OptionDefinition& option : command.options) {
    for (const std::string& word : option.positional ? option.choices : option.names)
      entries += Entry(word, option.help);
  }
  return fmt::format("        {} = [ordered]@{{\n{}        }}\n", Literal(command.words), entries);
}

std::string PowerShellValues(const CommandDefinition& command) {
  std::string text;
  for (const OptionDefinition& option : command.options) {
    if (option.positional || option.value.empty()) continue;
    std::string entries;
    for (const std::string& choice : option.choices) entries += Entry(choice, option.help);
    for (const std::string& name : option.names)
      text += fmt::format("        {} = [ordered]@{{\n{}        }}\n", Literal(command.words + " " + name),
                          entries);
  }
  return text;
}

}  // namespace

std::string BashCompletion(const std::vector<CommandDefinition>& commands) {
  std::string script(kBashHead);
  script += BashCommands(commands);
  script += kBashValues;
  for (const CommandDefinition& command : commands) script += BashValues(command);
  script += kBashWords;
  for (const CommandDefinition& command : commands) script += BashWords(command);
  return script += kBashTail;
}

std::string PowerShellCompletion(const std::vector<CommandDefinition>& commands) {
  std::string script(kPowerShellHead);
  for (const CommandDefinition& command : commands) script += PowerShellFollowing(command, commands);
  script += kPowerShellValues;
  for (const CommandDefinition& command : commands) script += PowerShellValues(command);
  return script += kPowerShellTail;
}

}  // namespace tarnwick::host
