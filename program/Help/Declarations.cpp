#include "program/Help/Declarations.h"

#include <cstddef>

namespace applydic {
namespace {

DeclaredOption DeclarationOf(const CLI::Option& option) {
  DeclaredOption declared;
  for (const std::string& name : option.get_snames()) declared.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) declared.names.push_back("--" + name);
  declared.description = option.get_description();
  // A flag takes a text where it is declared with the one that stands for none, in braces.
  const bool isFlag = option.get_items_expected_max() == 0 || option.get_expected_min() == 0;
  declared.isTextOptional = isFlag && !option.get_type_name().empty();
  if (!isFlag || declared.isTextOptional) declared.kind = option.get_type_name();
  return declared;
}

std::string ArgumentOf(const CLI::Option& positional) {
  std::string name = positional.get_name(true, false);
  if (positional.get_expected_max() > 1) name += "...";
  return positional.get_required() ? name : "[" + name + "]";
}

}  // namespace

std::vector<DeclaredOption> OptionsOf(const CLI::App& app) {
  std::vector<DeclaredOption> options;
  for (const CLI::Option* option : app.get_options()) {
    if (option->nonpositional()) options.push_back(DeclarationOf(*option));
  }
  return options;
}

std::vector<DeclaredCommand> CommandsOf(const CLI::App& program) {
  std::vector<DeclaredCommand> commands;
  for (const CLI::App* app : program.get_subcommands({})) {
    DeclaredCommand command{app->get_name(), app->get_description(), app->get_footer(), {}, {}};
    command.options = OptionsOf(*app);
    for (const CLI::Option* option : app->get_options()) {
      if (option->get_positional()) command.arguments.push_back(ArgumentOf(*option));
    }
    commands.push_back(std::move(command));
  }
  return commands;
}

}  // namespace applydic
