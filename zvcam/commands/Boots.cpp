#include "zvcam/commands/Boots.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "record/Report.h"
#include "supervisor/Boot.h"
#include "supervisor/Plugin.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/views/DiagnosisView.h"
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
    double seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return error == std::errc() && end == text.data() + text.size() && seconds >= 0.001 && seconds <= 1e6
               ? ""
               : "expected a number of seconds from 0.001 to 1000000, got \"" + text + "\"";
}

bool IsStandardInput(const std::string& source) {
    return source == "-";
}

/// The first key of an object's text, comments passed over; empty for a text that is none.
std::string_view FirstKey(std::string_view text) {
    while (!text.empty()) {
        if (text.starts_with("//")) {
            text.remove_prefix(std::min(text.find('\n'), text.size()));
        } else if (text.starts_with("/*")) {
            const std::size_t end = text.find("*/", 2);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
        } else if (text.front() == '"') {
            text.remove_prefix(1);
            return text.substr(0, text.find('"'));
        } else {
            text.remove_prefix(1);
        }
    }
    return {};
}

/// Whether a text is a report: its first key is one that no phone file has.
bool IsReport(std::string_view text) {
    constexpr std::array<std::string_view, 9> kKeys = {
        "format", "phone", "plugin", "ended", "events", "log", "devices", "eepromReads", "thirdCalibration"};
    return std::find(kKeys.begin(), kKeys.end(), FirstKey(text)) != kKeys.end();
}

analysis::Boot ReadBoot(const std::string& text, const std::string& name) {
    analysis::Boot boot;
    try {
        boot.record = record::ReadReport(text);
    } catch (const record::ReportError& error) {
        throw std::runtime_error(name + ": " + error.what());
    }
    if (!boot.record.description.empty()) {
        boot.phone = virtualphone::ParsePhone(boot.record.description, "", name + ": /description");
    }
    return boot;
}

virtualphone::PhoneDescription ReadPhone(const Source& source, const BootOptions& options) {
    virtualphone::PhoneDescription phone = virtualphone::ParsePhone(
        source.text, IsStandardInput(options.source) ? "" : fs::path(options.source).parent_path(),
        source.name);
    SetProperties(options, phone);
    return phone;
}

fs::path LibraryOf(const BootOptions& options) {
    return options.library.empty() ? supervisor::Plugin::DefaultLibrary() : fs::path(options.library);
}

/// Every file that a phone file names, wherever it does.
void CollectSideFiles(const nlohmann::json& value, const fs::path& folder, std::vector<fs::path>& files) {
    if (value.is_object()) {
        if (const auto file = value.find("file"); file != value.end() && file->is_string()) {
            files.push_back(folder / file->get<std::string>());
        }
    }
    if (value.is_structured()) {
        for (const nlohmann::json& element : value) {
            CollectSideFiles(element, folder, files);
        }
    }
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
    command
        .add_option("--root", options.root,
                    "Keep the phone's files in this folder (default: a temporary one, removed at the end)")
        ->type_name("DIR")
        ->check(CheckNotEmpty);
    command.add_flag("--clean-root", options.cleanRoot, "Remove what is in that folder first");
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

Source ReadSource(const BootOptions& options) {
    const virtualphone::FileContent content = virtualphone::ReadInput(options.source);
    const std::string name = virtualphone::InputName(options.source);
    if (!content.error.empty()) {
        throw std::runtime_error(name + ": expected a phone file or a report, got " + content.instead());
    }
    std::string text(content.bytes.begin(), content.bytes.end());
    const bool isReport = IsReport(text);
    return {.text = std::move(text), .name = name, .isReport = isReport};
}

void RefuseBootOptions(const Source& source, const BootOptions& options) {
    if (options.sayHow()) {
        throw std::runtime_error(
            source.name +
            " is a report: its boot is over, and --set, --root, --clean-root, --library and "
            "--timeout change nothing");
    }
}

analysis::Boot Obtain(const BootOptions& options, bool forReport) {
    const Source source = ReadSource(options);
    if (source.isReport) {
        RefuseBootOptions(source, options);
    }
    return Obtain(source, options, forReport);
}

analysis::Boot Obtain(const Source& source, const BootOptions& options, bool forReport) {
    if (source.isReport) {
        return ReadBoot(source.text, source.name);
    }
    analysis::Boot boot;
    boot.phone = ReadPhone(source, options);
    boot.record = supervisor::Boot(*boot.phone, SupervisorOptions(options, forReport));
    return boot;
}

virtualphone::PhoneDescription PhoneOf(const BootOptions& options) {
    const Source source = ReadSource(options);
    if (!source.isReport) {
        return ReadPhone(source, options);
    }
    std::optional<virtualphone::PhoneDescription> phone = ReadBoot(source.text, source.name).phone;
    if (!phone) {
        throw std::runtime_error(source.name + ": the report does not say which phone it was");
    }
    SetProperties(options, *phone);
    return std::move(*phone);
}

std::vector<fs::path> InputsOf(const BootOptions& options) {
    std::vector<fs::path> inputs = {LibraryOf(options)};
    if (IsStandardInput(options.source)) {
        return inputs;
    }
    inputs.emplace_back(options.source);
    // What is no phone file names nothing, and is complained of when it is read.
    const virtualphone::FileContent content = virtualphone::ReadWholeFile(options.source, true);
    const std::string_view text(reinterpret_cast<const char*>(content.bytes.data()), content.bytes.size());
    if (!IsReport(text)) {
        const nlohmann::json phone = nlohmann::json::parse(text, nullptr, false, true);
        CollectSideFiles(phone, fs::path(options.source).parent_path(), inputs);
    }
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
    int logicalIndex = 0;
    int member = 0;
    const char* const end = text.data() + text.size();
    auto parsed = std::from_chars(text.data(), end, logicalIndex);
    const bool hasMember = parsed.ec == std::errc() && parsed.ptr != end && *parsed.ptr == '/';
    if (hasMember) {
        parsed = std::from_chars(parsed.ptr + 1, end, member);
    }
    const bool good = parsed.ec == std::errc() && parsed.ptr == end;
    const auto found = std::find_if(devices.begin(), devices.end(), [&](const analysis::Device& device) {
        return device.logicalIndex == logicalIndex &&
               device.memberId == (hasMember ? std::optional(member) : std::nullopt);
    });
    if (!good || found == devices.end()) {
        std::string names;
        for (const analysis::Device& device : devices) {
            names +=
                (names.empty() ? "" : ", ") + analysis::DeviceNumber(device.logicalIndex, device.memberId);
        }
        throw std::runtime_error("no device \"" + Printable(text) + "\" was updated; " +
                                 (names.empty() ? "none was" : "there are " + names));
    }
    return static_cast<std::size_t>(found - devices.begin());
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
