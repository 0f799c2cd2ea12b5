#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/CalibrationFiles.h"
#include "formats/Hex.h"
#include "virtualphone/InputFile.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/CalibrationView.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// What every command that writes a file needs.
struct WriteOptions {
    std::string output;
    bool force = false;
};

struct SealOptions {
    std::string input;
    WriteOptions write;
};

struct DualOptions {
    std::string master;
    std::string slave;
    std::string blockFile;
    std::optional<unsigned> fill;
    std::size_t size = 0;
    bool crc = false;
    WriteOptions write;
};

struct OisOptions {
    std::string fuseId;
    formats::OisCalibrationFile file;
    WriteOptions write;
};

/// Writes a file and tells what it is.
int Write(const WriteOptions& options, const std::vector<std::string>& inputs, const Bytes& bytes) {
    CheckOutputs({options.output}, inputs, options.force);
    WriteFile(options.output, [&](std::ostream& out) {
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    });
    const analysis::CalibrationContent content = analysis::ContentOfCalibrationFile(bytes);
    if (options.output != "-") {
        PrintOut([&](std::ostream& out) {
            PrintCalibrationFile(out, options.output, content, nullptr, OutputStyle());
        });
    }
    return content.good() ? kExitSuccess : kExitBad;
}

int Seal(const SealOptions& options) {
    const Bytes bytes = ReadFile(options.input, "a calibration file");
    const std::optional<Bytes> sealed = analysis::Sealed(bytes);
    if (!sealed) {
        throw std::runtime_error(virtualphone::InputName(options.input) + ": " +
                                 analysis::ContentOfCalibrationFile(bytes).trouble);
    }
    return Write(options.write, {options.input}, *sealed);
}

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
    return Write(options.write, {options.blockFile}, formats::Encode(file));
}

int MakeOis(const OisOptions& options) {
    formats::OisCalibrationFile file = options.file;
    file.fuseId = formats::ParseHex(options.fuseId).value_or(Bytes());
    return Write(options.write, {}, formats::Encode(file));
}

std::string CheckFuseId(const std::string& text) {
    const auto bytes = formats::ParseHex(text);
    return bytes && bytes->size() <= formats::kLongestFuseId
               ? ""
               : "expected at most " + std::to_string(formats::kLongestFuseId) +
                     " bytes, each as two hexadecimal digits, got " +
                     (bytes ? Counted(bytes->size(), "byte") : "\"" + text + "\"");
}

void AddWriteOptions(CLI::App& command, WriteOptions& options) {
    command.add_flag("--force", options.force, "Write over a file that exists");
}

void AddOutput(CLI::App& command, WriteOptions& options) {
    command.add_option("-o,--output", options.output, "The file to write; \"-\": standard output")
        ->type_name("FILE")
        ->required()
        ->check(CheckNotEmpty);
    AddWriteOptions(command, options);
}

void AddSeal(CLI::App& parent, std::function<int()>& chosen) {
    const auto options = std::make_shared<SealOptions>();
    CLI::App* const command =
        parent.add_subcommand("seal", "Write a calibration file with its CRC added or mended");
    command->add_option("IN", options->input, "A calibration file of either kind, or \"-\"")
        ->type_name("FILE")
        ->required()
        ->check(CheckNotEmpty);
    command->add_option("OUT", options->write.output, "The file to write; \"-\": standard output")
        ->type_name("FILE")
        ->required()
        ->check(CheckNotEmpty);
    AddWriteOptions(*command, options->write);
    command->callback([options, &chosen] { chosen = [options] { return Seal(*options); }; });
}

void AddMakeDual(CLI::App& parent, std::function<int()>& chosen) {
    const auto options = std::make_shared<DualOptions>();
    CLI::App* const command = parent.add_subcommand("make-dual", "Write a dual-camera calibration file");
    command->add_option("--master", options->master, "Fuse id of the master module (default: none)")
        ->type_name("HEX")
        ->check(CheckFuseId);
    command->add_option("--slave", options->slave, "Fuse id of the slave module (default: none)")
        ->type_name("HEX")
        ->check(CheckFuseId);
    CLI::Option* const block = command->add_option("--block", options->blockFile, "The calibration block")
                                   ->type_name("FILE")
                                   ->check(CheckNotEmpty);
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
    AddOutput(*command, options->write);
    command->callback([options, &chosen, command] {
        if (command->count("--block") + command->count("--fill") == 0) {
            throw CLI::RequiredError("--block or --fill");
        }
        chosen = [options] { return MakeDual(*options); };
    });
}

void AddMakeOis(CLI::App& parent, std::function<int()>& chosen) {
    const auto options = std::make_shared<OisOptions>();
    CLI::App* const command = parent.add_subcommand("make-ois", "Write a stabiliser calibration file");
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
    AddOutput(*command, options->write);
    command->callback([options, &chosen] { chosen = [options] { return MakeOis(*options); }; });
}

}  // namespace

void AddCalibrationWriters(CLI::App& calibration, std::function<int()>& chosen) {
    AddSeal(calibration, chosen);
    AddMakeDual(calibration, chosen);
    AddMakeOis(calibration, chosen);
}

}  // namespace zvcam
