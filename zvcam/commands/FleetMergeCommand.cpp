#include <filesystem>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/FleetCommands.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/fleet/FleetDatabase.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

struct MergeOptions {
    std::string output;
    std::vector<std::string> inputs;
};

int Run(const MergeOptions& options) {
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(options.output, error))) {
        throw std::runtime_error("cannot write " + options.output + ": it exists");
    }
    Draft draft(options.output, options.output);
    const auto phones = static_cast<std::size_t>(MergeFleets(draft.path(), options.output, options.inputs));
    draft.become(options.output, NewFilePermissions());
    PrintOut([&](std::ostream& out) {
        out << Printable(options.output) << ": " << Counted(phones, "phone") << " of "
            << Counted(options.inputs.size(), "database") << '\n';
    });
    return kExitSuccess;
}

}  // namespace

void AddFleetMergeCommand(CLI::App& fleet, std::function<int()>& chosen) {
    const auto options = std::make_shared<MergeOptions>();
    CLI::App* const command =
        fleet.add_subcommand("merge", "Join the databases of several runs into a new one");
    command->add_option("OUT", options->output, "The database to write")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    command->add_option("IN", options->inputs, "Databases of `zvcam fleet run`")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
