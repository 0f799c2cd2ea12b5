#include <filesystem>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/DevicePull.h"
#include "analysis/PhoneCheck.h"
#include "formats/PrintableText.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/ForEachFile.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/files/Output.h"
#include "zvcam/files/PhoneFolder.h"
#include "zvcam/views/PhoneView.h"

namespace zvcam {

namespace {

struct CheckOptions {
    std::vector<std::string> sources;
};

int RunCheck(const CheckOptions& options) {
    return ForEachFile(options.sources, [](const std::string& source) {
        const virtualphone::PhoneDescription phone = virtualphone::ReadPhoneFile(source);
        const analysis::PhoneCheck check = analysis::Check(phone);
        PrintOut([&](std::ostream& out) {
            PrintPhoneCheck(out, virtualphone::InputName(source), phone, check, OutputStyle());
        });
        return !check.bad();
    });
}

struct TextOptions {
    std::string output = "-";
    bool force = false;
};

/// A command that writes a text of the program.
void AddTextCommand(CLI::App& phone, std::function<int()>& chosen, const char* name, const char* help,
                    std::string_view text) {
    const auto options = std::make_shared<TextOptions>();
    CLI::App* const command = phone.add_subcommand(name, help);
    command->add_option("-o,--output", options->output, "Write it to this file (default: standard output)")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command->add_flag("--force", options->force, "Replace the file where it exists");
    command->callback([options, &chosen, text] {
        chosen = [options, text] {
            CheckMayReplace(options->output, options->force);
            WriteFile(options->output, [text](std::ostream& out) { out << text; });
            return kExitSuccess;
        };
    });
}

struct FromDeviceOptions {
    std::string folder;
    std::string output;
    std::string like;
    bool force = false;
};

int RunFromDevice(const FromDeviceOptions& options) {
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

void AddFromDevice(CLI::App& phone, std::function<int()>& chosen) {
    const auto options = std::make_shared<FromDeviceOptions>();
    CLI::App* const command =
        phone.add_subcommand("from-device", "Make a phone file from what was pulled from a device");
    command
        ->add_option("DIR", options->folder,
                     "A folder with any of: EEPROM dumps, the persist, vendor and data camera folders, the "
                     "output of getprop")
        ->required()
        ->check(CheckNotEmpty);
    command
        ->add_option("-o,--output", options->output,
                     "The phone file, NAME.json; its side files go to NAME.files")
        ->type_name("FILE")
        ->required()
        ->check(CheckNotEmpty);
    command
        ->add_option("--like", options->like,
                     "Take what no folder holds from this phone file (default: that of `zvcam phone new`)")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command->add_flag("--force", options->force, "Replace the phone file and its side files");
    command->callback([options, &chosen] { chosen = [options] { return RunFromDevice(*options); }; });
}

}  // namespace

void AddPhoneCommand(CLI::App& app, std::function<int()>& chosen) {
    CLI::App* const phone = app.add_subcommand("phone", "Check and make phone files");
    phone->require_subcommand(1);
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* const check =
        phone->add_subcommand("check", "Print what phone files have, and what is wrong, without a boot");
    check->add_option("P", options->sources, "Phone files, or \"-\"")
        ->type_name("FILE")
        ->required()
        ->check(CheckNotEmpty);
    check->callback([options, &chosen] { chosen = [options] { return RunCheck(*options); }; });
    AddTextCommand(*phone, chosen, "new", "Write a commented phone file to start from",
                   virtualphone::StartingPhoneFile());
    AddFromDevice(*phone, chosen);
    AddTextCommand(*phone, chosen, "schema", "Write the JSON Schema of the phone file",
                   virtualphone::PhoneFileSchema());
}

}  // namespace zvcam
