#include <exception>
#include <functional>
#include <iostream>

#include <CLI/CLI.hpp>

#include "supervisor/EndOnSignal.h"
#include "zvcam/commands/RunCommand.h"

int main(int argc, char** argv) {
    try {
        const supervisor::EndOnSignal endOnSignal;
        CLI::App app("Boots virtual phones with the camera platform-information plug-in.", "zvcam");
        app.footer(
            "Exit codes: 0 success; 1 the plug-in threw; 2 wrong usage, a phone file or plug-in that cannot\n"
            "be used, or an output that cannot be written.");
        app.set_version_flag("--version", "zvcam " ZVCAM_VERSION);
        app.require_subcommand(1);
        std::function<int()> chosen;
        zvcam::AddRunCommand(app, chosen);
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            return app.exit(error) == 0 ? zvcam::kExitSuccess : zvcam::kExitUnusable;
        }
        return chosen();
    } catch (const std::exception& error) {
        std::cerr << "zvcam: " << error.what() << '\n';
        return zvcam::kExitUnusable;
    }
}
