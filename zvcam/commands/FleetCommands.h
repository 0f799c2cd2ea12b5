#pragma once

#include <functional>

#include <CLI/CLI.hpp>

#include "zvcam/commands/Commands.h"

namespace zvcam {

// The commands below `zvcam fleet`.

/// Boots many phones into a database.
void AddFleetRunCommand(CLI::App& fleet, std::function<int()>& chosen);
/// Tells what a database holds.
void AddFleetReportCommand(CLI::App& fleet, std::function<int()>& chosen);
/// Joins databases.
void AddFleetMergeCommand(CLI::App& fleet, std::function<int()>& chosen);
/// Makes fleets with troubles that are known.
void AddFleetMakeCommand(CLI::App& fleet, std::function<int()>& chosen);

}  // namespace zvcam
