#include "zvcam/commands/Commands.h"

#include <algorithm>
#include <array>

namespace zvcam {

namespace {

struct Command {
    const char* name;
    void (*add)(CLI::App& app, std::function<int()>& chosen);
};
constexpr std::array kCommands = {
    Command{"run", AddRunCommand},
    Command{"getprop", AddGetpropCommand},
    Command{"dumpsys", AddDumpsysCommand},
    Command{"logcat", AddLogcatCommand},
    Command{"streams", AddStreamsCommand},
    Command{"why", AddWhyCommand},
    Command{"diff", AddDiffCommand},
    Command{"eeprom", AddEepromCommand},
    Command{"calibration", AddCalibrationCommand},
    Command{"phone", AddPhoneCommand},
    Command{"influence", AddInfluenceCommand},
    Command{"fleet", AddFleetCommand},
};

}  // namespace

std::vector<std::string> CommandNames() {
    std::vector<std::string> names;
    names.reserve(std::size(kCommands));
    for (const Command& command : kCommands) {
        names.emplace_back(command.name);
    }
    return names;
}

void AddCommands(CLI::App& app, std::function<int()>& chosen, std::string_view only) {
    app.name("zvcam");
    app.description("Boots virtual phones with the camera platform-information plug-in, and explains them.");
    app.footer(
        "Exit status: 0; 1 the boot did not return, what was compared differs, or what was checked is bad;\n"
        "2 wrong usage, an input that cannot be used, or an output that cannot be written.");
    app.set_version_flag("--version", "zvcam " ZVCAM_VERSION);
    app.require_subcommand(1);
    const auto wanted = std::find_if(kCommands.begin(), kCommands.end(),
                                     [=](const Command& command) { return command.name == only; });
    for (const Command& command : kCommands) {
        if (wanted == kCommands.end() || command.name == wanted->name) {
            command.add(app, chosen);
        }
    }
}

}  // namespace zvcam
