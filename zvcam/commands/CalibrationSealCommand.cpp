#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/CalibrationFiles.h"
#include "virtualphone/InputFile.h"
#include "zvcam/commands/CalibrationCommands.h"
#include "zvcam/commands/CalibrationOutput.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;

struct SealOptions {
    std::string input;
    CalibrationOutput write;
};

int Seal(const SealOptions& options) {
    const Bytes bytes = ReadFile(options.input, "a calibration file");
    const std::optional<Bytes> sealed = analysis::Sealed(bytes);
    if (!sealed) {
        throw std::runtime_error(virtualphone::InputName(options.input) + ": " +
                                 analysis::ContentOfCalibrationFile(bytes).trouble);
    }
    return WriteCalibration(options.write, {options.input}, *sealed);
}

}  // namespace

void AddCalibrationSealCommand(CLI::App& calibration, std::function<int()>& chosen) {
    const auto options = std::make_shared<SealOptions>();
    CLI::App* const command =
        calibration.add_subcommand("seal", "Write a calibration file with its CRC added or mended");
    command->add_option("IN", options->input, "A calibration file of either kind, or \"-\"")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    command->add_option("OUT", options->write.output, "The file to write; \"-\": standard output")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    AddForce(*command, options->write);
    command->callback([options, &chosen] { chosen = [options] { return Seal(*options); }; });
}

}  // namespace zvcam
