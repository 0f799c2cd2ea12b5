#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "formats/DualCalibrationFile.h"
#include "formats/Hex.h"
#include "virtualphone/InputFile.h"
#include "zvcam/commands/CalibrationCommands.h"
#include "zvcam/commands/CalibrationOutput.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;

struct DualOptions {
    std::string master;
    std::string slave;
    std::string blockFile;
    std::optional<unsigned> fill;
    std::size_t size = 0;
    bool crc = false;
    CalibrationOutput write;
};

int MakeDual(const DualOptions& options) {
    formats::DualCalibrationFile file;
    file.masterFuseId = formats::ParseHex(options.master).value_or(Bytes());
    file.slaveFuseId = formats::ParseHex(options.slave).value_or(Bytes());
    file.block = options.fill ? Bytes(options.size, static_cast<std::uint8_t>(*options.fill))
                              : ReadFile(options.blockFile, "a calibration block");
    file.crc = options.crc;
    const auto& sizes = formats::kCalibrationBlockSizes;
    if (std::find(sizes.begin(), sizes.end(), file.block.size()) == sizes.end()) {
        throw std::runtime_error(virtualphone::InputName(options.blockFile) +
                                 ": expected a calibration block of 419, 2048 or 4096 bytes, got one of " +
                                 std::to_string(file.block.size()));
    }
    return WriteCalibration(options.write, {options.blockFile}, formats::Encode(file));
}

}  // namespace

void AddCalibrationMakeDualCommand(CLI::App& calibration, std::function<int()>& chosen) {
    const auto options = std::make_shared<DualOptions>();
    CLI::App* const command = calibration.add_subcommand("make-dual", "Write a dual-camera calibration file");
    command->add_option("--master", options->master, "Fuse id of the master module (default: none)")
        ->type_name("HEX")
        ->check(CheckFuseId);
    command->add_option("--slave", options->slave, "Fuse id of the slave module (default: none)")
        ->type_name("HEX")
        ->check(CheckFuseId);
    CLI::Option* const block = command->add_option("--block", options->blockFile, "The calibration block")
                                   ->type_name("FILE")
                                   ->check(CheckName);
    CLI::Option* const fill = command->add_option("--fill", options->fill, "A block of this byte instead")
                                  ->type_name("BYTE")
                                  ->check(WholeNumber(0, 255))
                                  ->excludes(block);
    CLI::Option* const size = command->add_option("--size", options->size, "Its bytes: 419, 2048 or 4096")
                                  ->type_name("N")
                                  ->check(CLI::IsMember({419, 2048, 4096}));
    size->needs(fill);
    fill->needs(size);
    command->add_flag("--crc", options->crc, "Close the file with a CRC (the \"maintained\" layout)");
    AddCalibrationOutput(*command, options->write);
    command->callback([options, &chosen, command] {
        if (command->count("--block") + command->count("--fill") == 0) {
            throw CLI::RequiredError("--block or --fill");
        }
        chosen = [options] { return MakeDual(*options); };
    });
}

}  // namespace zvcam
