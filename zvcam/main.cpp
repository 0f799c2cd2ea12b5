#include <algorithm>
#include <exception>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "analysis/Why.h"
#include "supervisor/EndOnSignal.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Files.h"
#include "zvcam/commands/Output.h"

namespace {

int Complain(std::string_view message) {
    zvcam::Complain(message);
    return zvcam::kExitUnusable;
}

/// Prints help, version or a complaint about the command line.
int ExitOfParser(const CLI::App& app, const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) {
        app.exit(error, std::cout, std::cerr);
        return zvcam::kExitUnusable;
    }
    zvcam::PrintOut([&](std::ostream& out) { app.exit(error, out, std::cerr); });
    return zvcam::kExitSuccess;
}

std::vector<std::string> CommandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    return names;
}

/// What is wrong with the first argument where it should name a command; empty where it does.
std::string UnknownCommand(const CLI::App& app, std::string_view first) {
    const std::vector<std::string> names = CommandNames(app);
    if (first.empty() || first.starts_with('-') ||
        std::find(names.begin(), names.end(), first) != names.end()) {
        return {};
    }
    return "no command is called \"" + std::string(first) + "\"; the nearest is \"" +
           analysis::NearestOf(names, first, 1).front() + "\"";
}

int Main(int argc, char** argv) {
    CLI::App app;
    std::function<int()> chosen;
    zvcam::AddCommands(app, chosen);
    if (const std::string wrong = UnknownCommand(app, argc > 1 ? argv[1] : ""); !wrong.empty()) {
        return Complain(wrong);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return ExitOfParser(app, error);
    }
    return chosen();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const supervisor::EndOnSignal endOnSignal;
        return Main(argc, argv);
    } catch (const std::bad_alloc&) {
        return Complain("there is not enough memory");
    } catch (const std::exception& error) {
        return Complain(error.what());
    }
}
