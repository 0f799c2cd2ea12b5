#include "zvcam/commands/FleetCommands.h"

namespace zvcam {

void AddFleetCommand(CLI::App& app, std::function<int()>& chosen) {
    CLI::App* const fleet = app.add_subcommand("fleet", "Boot many phones, and ask what they share");
    fleet->require_subcommand(1);
    for (const auto& add :
         {AddFleetRunCommand, AddFleetReportCommand, AddFleetMergeCommand, AddFleetMakeCommand}) {
        add(*fleet, chosen);
    }
}

}  // namespace zvcam
