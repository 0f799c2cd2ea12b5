#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/CalibrationFiles.h"
#include "formats/Hex.h"
#include "tables/PublishedFiles.h"
#include "virtualphone/InputFile.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Files.h"
#include "zvcam/commands/Output.h"
#include "zvcam/views/CalibrationView.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

struct CheckOptions {
    std::vector<std::string> sources;
    BootOptions phone;  ///< without a source: none
};

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

Bytes ReadBytes(const std::string& source, std::string_view expected) {
    virtualphone::FileContent content = virtualphone::ReadInput(source);
    if (!content.error.empty()) {
        throw std::runtime_error(virtualphone::InputName(source) + ": expected " + std::string(expected) +
                                 ", got " + content.error);
    }
    return std::move(content.bytes);
}

analysis::CalibrationFolder ReadFolder(const std::string& path) {
    analysis::CalibrationFolder folder;
    std::error_code error;
    fs::directory_iterator entry(path, error);
    // The iterator goes in the order of the directory, as the plug-in does.
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const bool considered = tables::IsDualCalibrationFileName(name);
        const bool stabiliser = name == fs::path(tables::kOisFilePath).filename();
        if (!considered && !stabiliser) {
            folder.others.push_back(name);
            continue;
        }
        const virtualphone::FileContent content = virtualphone::ReadWholeFile(entry->path(), true);
        analysis::CalibrationFolder::File file{.name = name, .content = {}};
        if (content.error.empty()) {
            file.content = analysis::ContentOfCalibrationFile(content.bytes);
        } else {
            file.content.trouble = content.error;
        }
        if (considered) {
            folder.considered.push_back(std::move(file));
        } else {
            folder.stabiliser = std::move(file);
        }
    }
    if (error) {
        throw std::runtime_error(path + ": expected a folder that can be read, got " + error.message());
    }
    std::sort(folder.others.begin(), folder.others.end());
    return folder;
}

/// Without a phone: every file is sound. With one: every place that can have a file has one too.
bool IsGood(const analysis::CalibrationFolder& folder, const analysis::FuseIdOwners* owners) {
    const bool sound = (folder.stabiliser || !folder.considered.empty()) &&
                       (!folder.stabiliser || folder.stabiliser->content.oisTrouble().empty()) &&
                       std::all_of(folder.considered.begin(), folder.considered.end(),
                                   [](const auto& file) { return file.content.dualTrouble().empty(); });
    return sound &&
           (owners == nullptr ||
            (folder.stabiliserTaken(*owners) &&
             std::all_of(tables::kDualCameraPairs.begin(), tables::kDualCameraPairs.end(),
                         [&](const auto& pair) { return folder.takenFor(pair, *owners) != nullptr; })));
}

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
            const analysis::CalibrationFolder folder = ReadFolder(source);
            print([&](std::ostream& out) {
                PrintCalibrationFolder(out, source, folder, owners, OutputStyle());
            });
            return IsGood(folder, owners);
        }
        const analysis::CalibrationContent content =
            analysis::ContentOfCalibrationFile(ReadBytes(source, "a calibration file or a folder of them"));
        print([&](std::ostream& out) {
            PrintCalibrationFile(out, virtualphone::InputName(source), content, owners, OutputStyle());
        });
        return content.good() && (owners == nullptr || analysis::Serves(content, *owners));
    });
    return std::max(status, ofFiles);
}

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
    const Bytes bytes = ReadBytes(options.input, "a calibration file");
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
                              : ReadBytes(options.blockFile, "a calibration block");
    file.crc = options.crc;
    const auto& sizes = formats::kCalibrationBlockSizes;
    if (std::find(sizes.begin(), sizes.end(), file.block.size()) == sizes.end()) {
        throw std::runtime_error("expected a block of 419, 2048 or 4096 bytes, got " +
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
                     " bytes in hexadecimal, got \"" + text + "\"";
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
                                  ->check(CLI::Range(0, 255))
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
    command->add_option("--gain-x", options->file.gainX, "Gain X")->type_name("N")->required();
    command->add_option("--gain-y", options->file.gainY, "Gain Y")->type_name("N")->required();
    command->add_option("--version", options->file.version, "Version of the format (default: 1)")
        ->type_name("N")
        ->check(CLI::Range(0, 255));
    AddOutput(*command, options->write);
    command->callback([options, &chosen] { chosen = [options] { return MakeOis(*options); }; });
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
        ->check(CheckNotEmpty);
    command
        ->add_option("--phone", options->phone.source,
                     "Say whom the fuse ids name on this phone: a phone file (booted first) or a report")
        ->type_name("P")
        ->check(CheckNotEmpty);
    AddBootOptionsWithoutSource(*command, options->phone);
    AddSeal(*command, chosen);
    AddMakeDual(*command, chosen);
    AddMakeOis(*command, chosen);
    command->callback([options, &chosen, command] {
        if (!command->get_subcommands().empty()) {
            return;
        }
        if (options->sources.empty()) {
            throw CLI::RequiredError("SOURCES");
        }
        chosen = [options] { return Check(*options); };
    });
}

}  // namespace zvcam
