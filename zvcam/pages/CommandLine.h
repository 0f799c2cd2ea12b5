#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zvcam {

/// An option or a positional argument of a command.
struct Argument {
    std::vector<std::string> names;  ///< "-o", "--output": what is typed; empty for a positional
    std::string value;               ///< what stands for its value: "FILE", "SOURCES"; empty for a flag
    std::string type;                ///< what kind of value: "FILE", "DIR"; empty for a flag
    std::string description;         ///< without a full stop
    bool required = false;
    bool repeated = false;              ///< may be given, or may go on, several times
    std::vector<std::string> needs;     ///< options without which it is refused, by ascending name
    std::vector<std::string> excludes;  ///< options with which it is refused, by ascending name
};

/// A command as its parser knows it.
struct Command {
    std::string path;  ///< "calibration seal"; empty for the program itself
    std::string description;
    bool needsCommand = false;          ///< it does nothing without one of those below it
    std::vector<std::string> commands;  ///< the last word of those below it
    std::vector<Argument> positionals;
    std::vector<Argument> options;
};

/// The program and every command below it, each before those below it.
std::vector<Command> CommandsOf(const CLI::App& app);

}  // namespace zvcam
