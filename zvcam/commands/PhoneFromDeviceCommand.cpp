#include <filesystem>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/DevicePull.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/PhoneCommands.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/files/PhoneFolder.h"
#include "zvcam/views/PhoneView.h"

namespace zvcam {

namespace {

struct FromDeviceOptions {
    std::string folder;
    std::string output;
    std::string like;
    bool force = false;
};

int Run(const FromDeviceOptions& options) {
    if (options.output == "-") {
        throw std::runtime_error("standard output has no room for side files; -o takes the name of a file");
    }
    const LikePhone like = ReadLikePhone(options.like);
    const std::vector<analysis::PulledFile> files = ReadPulledFolder(options.folder, options.folder);
    std::vector<std::filesystem::path> inputs = {options.like};
    for (const analysis::PulledFile& file : files) {
        inputs.push_back(std::filesystem::path(options.folder) / file.path);
    }
    CheckIsNoInput(options.output, inputs);
    CheckIsNoInput(SideFolderOf(options.output), inputs);
    analysis::DevicePull pull = analysis::PhoneFromDevice(files, like.phone, like.name);
    if (!pull.trouble.empty()) {
        throw std::runtime_error(options.folder + ": " + pull.trouble);
    }
    pull.phone.name = std::filesystem::path(options.output).stem().string();
    WritePhone(options.output, pull.phone, options.force);
    PrintOut([&](std::ostream& out) { PrintDevicePull(out, pull); });
    return kExitSuccess;
}

}  // namespace

void AddPhoneFromDeviceCommand(CLI::App& phone, std::function<int()>& chosen) {
    const auto options = std::make_shared<FromDeviceOptions>();
    CLI::App* const command =
        phone.add_subcommand("from-device", "Make a phone file from what was pulled from a device");
    command
        ->add_option("DIR", options->folder,
                     "A folder with any of: EEPROM dumps, the persist, vendor and data camera folders, the "
                     "output of getprop")
        ->required()
        ->check(CheckName);
    command
        ->add_option("-o,--output", options->output,
                     "The phone file, NAME.json; its side files go to NAME.files")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    command
        ->add_option("--like", options->like,
                     "Take what no folder holds from this phone file (default: that of `zvcam phone new`)")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_flag("--force", options->force, "Replace the phone file and its side files");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
