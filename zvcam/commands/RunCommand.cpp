#include "zvcam/commands/RunCommand.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "record/Report.h"
#include "supervisor/Boot.h"
#include "supervisor/Plugin.h"
#include "virtualphone/PhoneDescription.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/views/Summary.h"

namespace zvcam {

namespace {

struct RunOptions {
    std::string phone;
    std::string json;
    std::string root;
    std::string library;
    std::vector<std::string> properties;  ///< NAME=VALUE
};

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

/// Refuses an empty name: what an unset variable of a shell leaves would pass for no option at all.
std::string CheckNotEmpty(const std::string& text) {
    return text.empty() ? "expected a name, got an empty text" : "";
}

/// Runs `print` on a stream and makes sure that all of it arrived.
template <typename Print>
void WriteTo(std::ostream& out, const std::string& name, const Print& print) {
    errno = 0;
    print(out);
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + name + ": " + std::generic_category().message(errno));
    }
}

void WriteReportTo(const std::string& path, const record::BootRecord& boot) {
    const auto print = [&](std::ostream& out) { record::WriteReport(out, boot); };
    if (path == "-") {
        WriteTo(std::cout, "standard output", print);
        return;
    }
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) {
        throw std::runtime_error("cannot write " + path + ": " + std::generic_category().message(errno));
    }
    WriteTo(file, path, print);
}

int Run(const RunOptions& options) {
    virtualphone::PhoneDescription phone = virtualphone::ReadPhoneFile(options.phone);
    for (const std::string& property : options.properties) {
        const std::size_t equals = property.find('=');
        phone.properties[property.substr(0, equals)] = property.substr(equals + 1);
    }
    const std::filesystem::path library = options.library.empty() ? supervisor::Plugin::DefaultLibrary()
                                                                  : std::filesystem::path(options.library);
    const record::BootRecord boot =
        supervisor::Boot(std::move(phone), {.library = library, .root = options.root});
    if (!boot.ended->returned()) {
        std::cerr << "zvcam: the run " << record::EndText(*boot.ended) << '\n';
    }
    if (!options.json.empty()) {
        WriteReportTo(options.json, boot);
    }
    if (options.json != "-") {
        WriteTo(std::cout, "standard output", [&](std::ostream& out) { PrintSummary(out, boot); });
    }
    return boot.ended->returned() ? kExitSuccess : kExitRunThrew;
}

}  // namespace

void AddRunCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<RunOptions>();
    CLI::App* command = app.add_subcommand("run", "Boot a virtual phone and show what the plug-in publishes");
    command->add_option("PHONE", options->phone, "The phone file (JSON with comments)")
        ->type_name("FILE")
        ->required();
    command
        ->add_option("--json", options->json,
                     "Write the complete report to this file; \"-\": print it instead of the summary")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command
        ->add_option("--root", options->root,
                     "Keep the phone's files in this folder (default: a temporary one, removed at the end)")
        ->type_name("DIR")
        ->check(CheckNotEmpty);
    command
        ->add_option("--set", options->properties, "Set a system property before start-up; may be repeated")
        ->type_name("NAME=VALUE")
        ->allow_extra_args(false)
        ->check(CheckProperty);
    command->add_option("--library", options->library, "Load this build of the plug-in")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
