#include "zvcam/commands/Commands.h"

namespace zvcam {

void AddCommands(CLI::App& app, std::function<int()>& chosen) {
    app.name("zvcam");
    app.description("Boots virtual phones with the camera platform-information plug-in, and explains them.");
    app.footer(
        "Exit status: 0; 1 the boot did not return, what was compared differs, or what was checked is bad;\n"
        "2 wrong usage, an input that cannot be used, or an output that cannot be written.");
    app.set_version_flag("--version", "zvcam " ZVCAM_VERSION);
    app.require_subcommand(1);
    for (const auto& add : {AddRunCommand, AddGetpropCommand, AddDumpsysCommand, AddLogcatCommand,
                            AddStreamsCommand, AddWhyCommand, AddDiffCommand, AddEepromCommand,
                            AddCalibrationCommand, AddPhoneCommand, AddInfluenceCommand, AddFleetCommand}) {
        add(app, chosen);
    }
}

}  // namespace zvcam
