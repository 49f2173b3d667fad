#include "host/manual/command_tree.h"

#include <CLI/CLI.hpp>

#include "host/options.h"

namespace tarnwick::host {
namespace {

// CLI11 tells choices in the type's name: "TEXT:{csv,json}".
std::vector<std::string> ChoicesOf(const std::string& type) {
  const size_t open = type.find('{');
  const size_t close = type.rfind('}');
  if (open == std::string::npos || close == std::string::npos) return {};
  return CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

std::vector<std::string> NamesOf(const CLI::Option& option) {
  if (option.get_positional()) return {option.get_name(true)};
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

OptionDefinition DefinitionOf(const CLI::Option& option) {
  OptionDefinition definition;
  definition.names = NamesOf(option);
  const std::string type = option.get_type_name();
  if (option.get_items_expected_max() > 0) definition.value = type.substr(0, type.find(':'));
  definition.choices = ChoicesOf(type);
  definition.help = option.get_description();
  definition.positional = option.get_positional();
  definition.required = option.get_required();
  return definition;
}

void Add(std::vector<CommandDefinition>& definitions, const CLI::App& command, const std::string& words) {
  CommandDefinition definition;
  definition.words = words;
  definition.help = command.get_description();
  definition.footer = command.get_footer();
  for (const CLI::Option* option : command.get_options()) definition.options.push_back(DefinitionOf(*option));
  const std::vector<const CLI::App*> parts = command.get_subcommands({});
  for (const CLI::App* part : parts) definition.subcommands.push_back(part->get_name());
  definitions.push_back(std::move(definition));
  for (const CLI::App* part : parts)
    Add(definitions, *part, words.empty() ? part->get_name() : words + " " + part->get_name());
}

}  // namespace

std::vector<CommandDefinition> CommandDefinitions() {
  Options options;
  CLI::App app;
  DefineCommandLine(app, options);
  std::vector<CommandDefinition> definitions;
  Add(definitions, app, {});
  return definitions;
}

}  // namespace tarnwick::host
