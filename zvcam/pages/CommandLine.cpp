#include "zvcam/pages/CommandLine.h"

#include <algorithm>
#include <set>
#include <utility>

#include <CLI/CLI.hpp>

namespace zvcam {

namespace {

std::vector<std::string> NamesOf(const std::set<CLI::Option*>& options) {
    std::vector<std::string> names;
    names.reserve(options.size());
    for (const CLI::Option* const option : options) {
        names.push_back(option->get_name());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Argument ArgumentOf(const CLI::Option& option) {
    Argument argument;
    for (const std::string& name : option.get_snames()) {
        argument.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        argument.names.push_back("--" + name);
    }
    const bool isPositional = argument.names.empty();
    if (isPositional) {
        argument.value = option.get_name(/*positional=*/true);
    } else if (option.get_type_size_max() > 0) {
        argument.value = option.get_type_name();
    }
    argument.type = argument.value.empty() ? "" : option.get_type_name();
    argument.description = option.get_description();
    argument.required = option.get_required();
    argument.repeated = option.get_expected_max() > 1;
    argument.needs = NamesOf(option.get_needs());
    argument.excludes = NamesOf(option.get_excludes());
    return argument;
}

void Collect(const CLI::App& app, const std::string& path, std::vector<Command>& commands) {
    Command command;
    command.path = path;
    command.description = app.get_description();
    command.needsCommand = app.get_require_subcommand_min() > 0;
    for (const CLI::Option* const option : app.get_options()) {
        Argument argument = ArgumentOf(*option);
        (argument.names.empty() ? command.positionals : command.options).push_back(std::move(argument));
    }
    const std::vector<const CLI::App*> below = app.get_subcommands([](const CLI::App*) { return true; });
    for (const CLI::App* const one : below) {
        command.commands.push_back(one->get_name());
    }
    commands.push_back(std::move(command));
    for (const CLI::App* const one : below) {
        Collect(*one, path.empty() ? one->get_name() : path + " " + one->get_name(), commands);
    }
}

}  // namespace

std::vector<Command> CommandsOf(const CLI::App& app) {
    std::vector<Command> commands;
    Collect(app, "", commands);
    return commands;
}

}  // namespace zvcam
