#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace zvcam {

/// Makes `app` the whole program: its name, its version and every command.
/// @param only the one command that is wanted, where it has that name: to build all takes longer than most
/// do.
void AddCommands(CLI::App& app, std::function<int()>& chosen, std::string_view only = {});

/// The names of all commands.
std::vector<std::string> CommandNames();

// Each adds its command. `chosen` receives the command's action when it is the one that the user gave; the
// action returns the exit status.

/// Boots a phone and tells what its modules, calibration and devices are, the worst first.
void AddRunCommand(CLI::App& app, std::function<int()>& chosen);
void AddGetpropCommand(CLI::App& app, std::function<int()>& chosen);
void AddDumpsysCommand(CLI::App& app, std::function<int()>& chosen);
void AddLogcatCommand(CLI::App& app, std::function<int()>& chosen);
void AddStreamsCommand(CLI::App& app, std::function<int()>& chosen);
/// Finds out which inputs decide what is published.
void AddInfluenceCommand(CLI::App& app, std::function<int()>& chosen);
/// Explains where a published item comes from, or why it is missing.
void AddWhyCommand(CLI::App& app, std::function<int()>& chosen);
/// Compares two boots.
void AddDiffCommand(CLI::App& app, std::function<int()>& chosen);
/// Checks and mends images of module memories.
void AddEepromCommand(CLI::App& app, std::function<int()>& chosen);
/// Checks and makes calibration files.
void AddCalibrationCommand(CLI::App& app, std::function<int()>& chosen);
/// Checks and makes phone files.
void AddPhoneCommand(CLI::App& app, std::function<int()>& chosen);
/// Boots many phones, and asks what they share.
void AddFleetCommand(CLI::App& app, std::function<int()>& chosen);

}  // namespace zvcam
