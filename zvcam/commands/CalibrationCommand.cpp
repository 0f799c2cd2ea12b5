#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "analysis/CalibrationFiles.h"
#include "virtualphone/InputFile.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/CalibrationCommands.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/ForEachFile.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/CalibrationFolder.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/CalibrationView.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

struct CheckOptions {
    std::vector<std::string> sources;
    BootOptions phone;  ///< without a source: none
};

int Check(const CheckOptions& options) {
    std::optional<analysis::FuseIdOwners> phone;
    int status = kExitSuccess;
    if (std::count(options.sources.begin(), options.sources.end(), "-") +
            (options.phone.source == "-" ? 1 : 0) >
        1) {
        throw std::runtime_error("standard input holds one file, not several");
    }
    if (!options.phone.source.empty()) {
        const analysis::Boot boot = Obtain(options.phone);
        status = ExitStatusOf(boot);
        phone = analysis::FuseIdOwnersOf(boot);
    }
    const analysis::FuseIdOwners* const owners = phone ? &*phone : nullptr;
    bool printed = false;
    const int ofFiles = ForEachFile(options.sources, [&](const std::string& source) {
        const auto print = [&](const auto& printOne) {
            PrintOut([&](std::ostream& out) {
                out << (std::exchange(printed, true) ? "\n" : "");
                printOne(out);
            });
        };
        if (fs::is_directory(source)) {
            const analysis::CalibrationFolder folder = ReadCalibrationFolder(source);
            print([&](std::ostream& out) {
                PrintCalibrationFolder(out, source, folder, owners, OutputStyle());
            });
            return folder.good(owners);
        }
        const analysis::CalibrationContent content =
            analysis::ContentOfCalibrationFile(ReadFile(source, "a calibration file or a folder of them"));
        print([&](std::ostream& out) {
            PrintCalibrationFile(out, virtualphone::InputName(source), content, owners, OutputStyle());
        });
        return content.good() && (owners == nullptr || analysis::Serves(content, *owners));
    });
    return std::max(status, ofFiles);
}

}  // namespace

void AddCalibrationCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* const command =
        app.add_subcommand("calibration",
                           "Tell what calibration files hold and whether they are sound; make "
                           "them");
    command
        ->add_option("SOURCES", options->sources,
                     "Calibration files, folders of them as persist/camera, or \"-\"")
        ->type_name("FILE")
        ->check(CheckName);
    command
        ->add_option("--phone", options->phone.source,
                     "Say whom the fuse ids name on this phone: a phone file (booted first) or a report")
        ->type_name("P")
        ->check(CheckName);
    AddBootOptionsWithoutSource(*command, options->phone);
    for (const auto& add :
         {AddCalibrationSealCommand, AddCalibrationMakeDualCommand, AddCalibrationMakeOisCommand}) {
        add(*command, chosen);
    }
    command->callback([options, &chosen, command] {
        if (!command->get_subcommands().empty()) {
            return;
        }
        if (options->sources.empty()) {
            throw CLI::RequiredError("SOURCES");
        }
        if (options->phone.source.empty() && options->phone.sayHow()) {
            throw CLI::RequiresError("--set, --root, --clean-root, --library or --timeout", "--phone");
        }
        chosen = [options] { return Check(*options); };
    });
}

}  // namespace zvcam
