#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "zvcam/pages/CommandLine.h"

namespace zvcam {

/// What a value on the command line is chosen from.
struct Choice {
    std::string kind;  ///< "file" and "folder" are the shell's own; "" has nothing to choose from
    std::vector<std::string> words;
};

/// The kinds with words of their own: names of properties, tags, published items, operations, formats,
/// layouts.
std::vector<Choice> Choices();

/// Which kind a value of a command is of.
std::string KindOf(const Command& command, const Argument& argument);

/// @throws std::logic_error when a value that has names to choose from is not there any more.
void CheckEveryChoiceHasItsArgument(std::span<const Command> commands);

/// The tables that the bash completion looks commands, options and words up in.
void PrintBashTables(std::ostream& out, std::span<const Command> commands);

/// A function a command that the zsh completion calls.
void PrintZshFunctions(std::ostream& out, std::span<const Command> commands);

}  // namespace zvcam
