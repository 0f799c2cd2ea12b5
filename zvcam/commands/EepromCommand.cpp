#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "analysis/EepromFindings.h"
#include "formats/EepromDump.h"
#include "formats/EepromImage.h"
#include "formats/ImageChange.h"
#include "virtualphone/InputFile.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/ForEachFile.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/EepromFile.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/EepromView.h"

namespace zvcam {

namespace {

struct EepromOptions {
    std::vector<std::string> files;
    std::string layout;
    std::vector<std::string> changes;  ///< OFFSET=BYTES
    bool seal = false;
    std::string raw;
    std::string text;
    bool force = false;

    bool hasOutput() const { return !raw.empty() || !text.empty(); }
};

std::string CheckChange(const std::string& text) {
    return formats::ReadImageChange(text)
               ? ""
               : "expected OFFSET=BYTES, such as 0x0010=0102 or \"16=01 02\", inside " +
                     std::to_string(tables::kEepromImageSize) + " bytes, got \"" + text + "\"";
}

std::string CheckLayout(const std::string& name) {
    if (formats::FindEepromLayout(name) != nullptr) {
        return "";
    }
    std::string known;
    for (const EepromCheckSumDesc& each : tables::kEepromLayouts) {
        known += (known.empty() ? "" : ", ") + std::string(each.eepromName);
    }
    return "expected one of " + known + ", got \"" + name + "\"";
}

/// Makes the changes that were asked for.
void Mend(const EepromOptions& options, const EepromCheckSumDesc* layout, const std::string& file,
          std::vector<std::uint8_t>& image) {
    for (const std::string& text : options.changes) {
        if (const auto change = formats::ReadImageChange(text)) {
            change->apply(image);
        }
    }
    if (options.seal) {
        layout = layout == nullptr ? formats::FindEepromLayout(image) : layout;
        if (layout == nullptr) {
            throw std::runtime_error(
                virtualphone::InputName(file) +
                ": its header id is of no layout to compute checksums by; --layout names one");
        }
        formats::StoreCheckSums(*layout, image);
    }
}

/// @return whether the image is good.
bool RunOne(const EepromOptions& options, const std::string& file, bool& printed) {
    formats::EepromFile eeprom = ReadEepromFile(file);
    const EepromCheckSumDesc* const layout =
        options.layout.empty() ? nullptr : formats::FindEepromLayout(options.layout);
    Mend(options, layout, file, eeprom.image);
    const analysis::EepromFindings findings = analysis::FindingsOf(eeprom.image, layout);
    if (!options.raw.empty()) {
        WriteFile(options.raw, eeprom.image);
    }
    if (!options.text.empty()) {
        WriteFile(options.text, [&](std::ostream& out) { out << formats::EepromDumpText(eeprom.image); });
    }
    if (options.raw != "-" && options.text != "-") {
        PrintOut([&](std::ostream& out) {
            out << (std::exchange(printed, true) ? "\n" : "");
            PrintEeprom(out, virtualphone::InputName(file), eeprom.size, eeprom.image, findings,
                        OutputStyle());
        });
    }
    return findings.good();
}

int Run(const EepromOptions& options) {
    if (options.hasOutput() && options.files.size() != 1) {
        throw std::runtime_error("--to-raw and --to-text write one file's image, not several");
    }
    CheckOutputs({options.raw, options.text}, options.files, options.force);
    bool printed = false;
    return ForEachFile(options.files,
                       [&](const std::string& file) { return RunOne(options, file, printed); });
}

}  // namespace

void AddEepromCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<EepromOptions>();
    CLI::App* const command = app.add_subcommand(
        "eeprom", "Tell what images of module memories hold, whether they are sound, and mend them");
    command
        ->add_option("FILES", options->files,
                     "Raw images, or their dumps: the plug-in's, logcat's, xxd's or hexdump -C's; \"-\"")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    command->add_option("--layout", options->layout, "Check by this layout, whatever the header id says")
        ->type_name("NAME")
        ->check(CheckLayout);
    command
        ->add_option(
            "--set", options->changes,
            "Put bytes (hexadecimal, blanks allowed) at an offset (decimal or 0x...); may be repeated")
        ->type_name("OFFSET=BYTES")
        ->allow_extra_args(false)
        ->check(CheckChange);
    command->add_flag("--seal", options->seal, "Then compute the checksums of the layout");
    command->add_option("--to-raw", options->raw, "Write the image to this file; \"-\": standard output")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_option("--to-text", options->text, "Write its dump, as the plug-in does")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_flag("--force", options->force, "Write over a file that exists");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
