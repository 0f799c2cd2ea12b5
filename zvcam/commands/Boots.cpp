#include "zvcam/commands/Boots.h"

#include <charconv>
#include <chrono>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "formats/DecimalText.h"
#include "supervisor/Plugin.h"
#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

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

fs::path LibraryOf(const BootOptions& options) {
    return options.library.empty() ? supervisor::Plugin::DefaultLibrary() : fs::path(options.library);
}

}  // namespace

void AddSharedBootOptions(CLI::App& command, BootOptions& options) {
    command.add_option("--set", options.properties, "Set a system property before start-up; may be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check(CheckProperty);
    command.add_option("--library", options.library, "Load this build of the plug-in")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
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
            ->check(CheckNotEmpty);
    command.add_flag("--clean-root", options.cleanRoot, "Remove what is in that folder first")->needs(root);
}

void AddSource(CLI::App& command, BootOptions& options) {
    command
        .add_option("P", options.source,
                    "A phone file (JSON with comments; booted first), a report of `run --json`, or \"-\"")
        ->type_name("FILE")
        ->required()
        ->check(CheckNotEmpty);
}

void AddBootOptions(CLI::App& command, BootOptions& options) {
    AddSource(command, options);
    AddBootOptionsWithoutSource(command, options);
}

void SetProperties(const BootOptions& options, virtualphone::PhoneDescription& phone) {
    for (const std::string& property : options.properties) {
        const std::size_t equals = property.find('=');
        phone.properties[property.substr(0, equals)] = property.substr(equals + 1);
    }
}

supervisor::BootOptions SupervisorOptions(const BootOptions& options, bool describe) {
    const std::chrono::duration<double> timeout(options.timeout);
    return {.library = LibraryOf(options),
            .root = options.root,
            .cleanRoot = options.cleanRoot,
            .timeout = std::chrono::duration_cast<std::chrono::milliseconds>(timeout),
            .describe = describe};
}

void RefuseBootOptions(const BootSource& source, const BootOptions& options) {
    if (options.sayHow()) {
        throw std::runtime_error(
            source.name +
            " is a report: its boot is over, and --set, --root, --clean-root, --library and "
            "--timeout change nothing");
    }
}

analysis::Boot Obtain(const BootOptions& options, bool forReport) {
    const BootSource source = ReadBootSource(options.source);
    if (source.isReport) {
        RefuseBootOptions(source, options);
    }
    return Obtain(source, options, forReport);
}

analysis::Boot Obtain(const BootSource& source, const BootOptions& options, bool forReport) {
    if (source.isReport) {
        return ReportedBoot(source);
    }
    analysis::Boot boot;
    boot.phone = ChosenPhone(source, options);
    boot.record = supervisor::Boot(*boot.phone, SupervisorOptions(options, forReport));
    return boot;
}

virtualphone::PhoneDescription ChosenPhone(const BootSource& source, const BootOptions& options) {
    virtualphone::PhoneDescription phone = PhoneOf(source);
    SetProperties(options, phone);
    return phone;
}

std::vector<fs::path> InputsOf(const BootOptions& options) {
    std::vector<fs::path> inputs = FilesOf(options.source);
    inputs.push_back(LibraryOf(options));
    return inputs;
}

int ExitStatusOf(const record::BootRecord& boot) {
    const std::string ending = EndingText(boot);
    if (ending.empty()) {
        return kExitSuccess;
    }
    std::cerr << "zvcam: " << Printable(ending) << '\n';
    return kExitBad;
}

std::size_t DeviceNamed(const std::string& text, const std::vector<analysis::Device>& devices) {
    if (const std::optional<std::size_t> found = analysis::FindDevice(text, devices)) {
        return *found;
    }
    std::string numbers;
    for (const analysis::Device& device : devices) {
        numbers += numbers.empty() ? "" : ", ";
        numbers += analysis::DeviceNumber(device.logicalIndex, device.memberId);
    }
    throw std::runtime_error("no device \"" + Printable(text) + "\" was updated; " +
                             (numbers.empty() ? "none was" : "there are " + numbers));
}

CLI::Validator WholeNumber(std::uint64_t least, std::uint64_t most) {
    const std::string range = std::to_string(least) + " to " + std::to_string(most);
    return {[=](const std::string& text) {
                std::uint64_t number = 0;
                const char* const end = text.data() + text.size();
                const auto [rest, error] = std::from_chars(text.data(), end, number);
                const bool good = error == std::errc() && rest == end && number >= least && number <= most;
                return good ? "" : "expected a whole number of " + range + ", got \"" + text + "\"";
            },
            range};
}

std::string CheckNotEmpty(const std::string& text) {
    return text.empty() ? "expected a name, got an empty text" : "";
}

}  // namespace zvcam
