#include "zvcam/commands/BootOptions.h"

#include <cstddef>

#include "formats/DecimalText.h"
#include "virtualphone/PhoneDescription.h"
#include "zvcam/commands/Validators.h"

namespace zvcam {

namespace {

/// Empty for a text that --set takes, else what is wrong with it.
std::string CheckProperty(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals == std::string::npos) {
        return "expected NAME=VALUE, got \"" + text + "\"";
    }
    const std::size_t length = text.size() - equals - 1;
    if (length > virtualphone::kLongestPropertyValue) {
        return "expected a value of at most " + std::to_string(virtualphone::kLongestPropertyValue) +
               " characters, got " + std::to_string(length);
    }
    return "";
}

std::string CheckSeconds(const std::string& text) {
    const double seconds = formats::ParseDecimal(text).value_or(0);
    return seconds >= 0.001 && seconds <= 1e6
               ? ""
               : "expected a number of seconds from 0.001 to 1000000, got \"" + text + "\"";
}

}  // namespace

void AddSharedBootOptions(CLI::App& command, BootOptions& options) {
    command.add_option("--set", options.properties, "Set a system property before start-up; may be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check(CheckProperty);
    command.add_option("--library", options.library, "Load this build of the plug-in")
        ->type_name("FILE")
        ->check(CheckName);
    command.add_option("--timeout", options.timeout, "End a boot that takes longer (default: 60)")
        ->type_name("SECONDS")
        ->check(CheckSeconds);
}

void AddBootOptionsWithoutSource(CLI::App& command, BootOptions& options) {
    AddSharedBootOptions(command, options);
    CLI::Option* const root =
        command
            .add_option(
                "--root", options.root,
                "Keep the phone's files in this folder (default: a temporary one, removed at the end)")
            ->type_name("DIR")
            ->check(CheckName);
    command.add_flag("--clean-root", options.cleanRoot, "Remove what is in that folder first")->needs(root);
}

void AddSource(CLI::App& command, BootOptions& options) {
    command
        .add_option("P", options.source,
                    "A phone file (JSON with comments; booted first), a report of `run --json`, or \"-\"")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
}

void AddBootOptions(CLI::App& command, BootOptions& options) {
    AddSource(command, options);
    AddBootOptionsWithoutSource(command, options);
}

}  // namespace zvcam
