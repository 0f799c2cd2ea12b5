#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "formats/Hex.h"
#include "formats/OisCalibrationFile.h"
#include "zvcam/commands/CalibrationCommands.h"
#include "zvcam/commands/CalibrationOutput.h"
#include "zvcam/commands/Validators.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;

struct OisOptions {
    std::string fuseId;
    formats::OisCalibrationFile file;
    CalibrationOutput write;
};

int MakeOis(const OisOptions& options) {
    formats::OisCalibrationFile file = options.file;
    file.fuseId = formats::ParseHex(options.fuseId).value_or(Bytes());
    return WriteCalibration(options.write, {}, formats::Encode(file));
}

}  // namespace

void AddCalibrationMakeOisCommand(CLI::App& calibration, std::function<int()>& chosen) {
    const auto options = std::make_shared<OisOptions>();
    CLI::App* const command = calibration.add_subcommand("make-ois", "Write a stabiliser calibration file");
    command->add_option("--fuse-id", options->fuseId, "Fuse id of the stabilised module")
        ->type_name("HEX")
        ->required()
        ->check(CheckFuseId);
    command->add_option("--gain-x", options->file.gainX, "Gain X")
        ->type_name("N")
        ->required()
        ->check(WholeNumber(0, std::numeric_limits<std::uint32_t>::max()));
    command->add_option("--gain-y", options->file.gainY, "Gain Y")
        ->type_name("N")
        ->required()
        ->check(WholeNumber(0, std::numeric_limits<std::uint32_t>::max()));
    command->add_option("--version", options->file.version, "Version of the format (default: 1)")
        ->type_name("N")
        ->check(WholeNumber(0, 255));
    AddCalibrationOutput(*command, options->write);
    command->callback([options, &chosen] { chosen = [options] { return MakeOis(*options); }; });
}

}  // namespace zvcam
