#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <exception>
#include <fcntl.h>
#include <functional>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "analysis/Why.h"
#include "supervisor/EndOnSignal.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/Limits.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/files/Output.h"

namespace {

int Complain(std::string_view message) {
    zvcam::Complain(message);
    return zvcam::kExitUnusable;
}

/// @param command the words that lead to the commands with these names: "zvcam fleet".
std::string NoCommand(const std::vector<std::string>& names, std::string_view wrong,
                      const std::string& command) {
    const std::string near = zvcam::NearWords(analysis::NamesNear(names, wrong));
    return "no command is called \"" + std::string(wrong) + "\"" +
           (near.empty() ? "; `" + command + " --help` lists them" : near);
}

std::string NoOption(std::string_view wrong, const std::string& command) {
    return "no option is called \"" + std::string(wrong) + "\"; `" + command + " --help` lists them";
}

/// Prints help, version or a complaint about the command line.
int ExitOfParser(const CLI::App& app, const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
        zvcam::PrintOut([&](std::ostream& out) { app.exit(error, out, std::cerr); });
        return zvcam::kExitSuccess;
    }
    std::string command = "zvcam";
    const CLI::App* last = &app;
    while (!last->get_subcommands().empty()) {
        last = last->get_subcommands().front();
        command += " " + last->get_name();
    }
    const std::vector<std::string> rest = last->remaining();
    if (last->get_require_subcommand_min() > 0 && !rest.empty()) {
        const auto wrong = std::find_if(rest.begin(), rest.end(),
                                        [](const std::string& word) { return !word.starts_with('-'); });
        if (wrong != rest.end()) {
            std::vector<std::string> names;
            for (const CLI::App* const part : last->get_subcommands([](const CLI::App*) { return true; })) {
                names.push_back(part->get_name());
            }
            return Complain(NoCommand(names, *wrong, command));
        }
    }
    if (error.get_name() == "RequiredError" && !rest.empty() && rest.front().starts_with('-')) {
        return Complain(NoOption(rest.front(), command));
    }
    return Complain(std::string(error.what()) + "; `" + command + " --help` tells more");
}

/// What is wrong with the first argument where it should name a command or an option of the program; empty
/// where it does.
std::string UnknownCommand(std::string_view first) {
    constexpr std::array<std::string_view, 3> kOptions = {"-h", "--help", "--version"};
    if (first.starts_with('-') && std::find(kOptions.begin(), kOptions.end(), first) == kOptions.end()) {
        return NoOption(first, "zvcam");
    }
    const std::vector<std::string> names = zvcam::CommandNames();
    if (first.empty() || first.starts_with('-') ||
        std::find(names.begin(), names.end(), first) != names.end()) {
        return {};
    }
    return NoCommand(names, first, "zvcam");
}

int Main(int argc, char** argv) {
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (const std::string wrong = UnknownCommand(first); !wrong.empty()) {
        return Complain(wrong);
    }
    CLI::App app;
    std::function<int()> chosen;
    zvcam::AddCommands(app, chosen, first);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return ExitOfParser(app, error);
    }
    return chosen();
}

/// Keeps the number of a standard stream that is closed from the next file that is opened, into which would
/// go what is printed. It stays one that can be neither read nor written.
void HoldClosedStreams() {
    const std::pair<int, int> streams[] = {
        {STDIN_FILENO, O_WRONLY}, {STDOUT_FILENO, O_RDONLY}, {STDERR_FILENO, O_RDONLY}};
    for (const auto& [number, otherWay] : streams) {
        if (fcntl(number, F_GETFD) < 0) {
            // The lowest free number is that one.
            open("/dev/null", otherWay);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    /// More than a boot and what is read and written beside it.
    constexpr std::size_t kOpenFiles = 64;
    zvcam::KeepMemoryBack();
    HoldClosedStreams();
    // Whoever started this program may ignore it, and then nobody could tell how a boot ended.
    std::signal(SIGCHLD, SIG_DFL);
    try {
        zvcam::ExpectOpenFiles(kOpenFiles);
        const supervisor::EndOnSignal endOnSignal;
        return Main(argc, argv);
    } catch (const std::bad_alloc&) {
        return Complain("there is not enough memory");
    } catch (const std::exception& error) {
        return Complain(error.what());
    }
}
