#pragma once

#include <functional>

#include <CLI/CLI.hpp>

namespace zvcam {

/// Exit codes of every command.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitRunThrew = 1;
inline constexpr int kExitUnusable = 2;  ///< usage, a bad input file, an output that cannot be written

/// Adds `zvcam run`: boots a virtual phone and shows what the plug-in publishes.
/// @param chosen receives the command's action when it is the one that the user gave; it returns the exit
/// code.
void AddRunCommand(CLI::App& app, std::function<int()>& chosen);

}  // namespace zvcam
