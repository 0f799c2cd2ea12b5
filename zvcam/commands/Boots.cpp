#include "zvcam/commands/Boots.h"

#include <chrono>
#include <cstddef>
#include <iostream>
#include <stdexcept>
#include <string>

#include "supervisor/Plugin.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

namespace fs = std::filesystem;

fs::path LibraryOf(const BootOptions& options) {
    return options.library.empty() ? supervisor::Plugin::DefaultLibrary() : fs::path(options.library);
}

}  // namespace

std::map<std::string, std::string> PropertiesOf(const BootOptions& options) {
    std::map<std::string, std::string> properties;
    for (const std::string& property : options.properties) {
        const std::size_t equals = property.find('=');
        properties[property.substr(0, equals)] = property.substr(equals + 1);
    }
    return properties;
}

void SetProperties(const BootOptions& options, virtualphone::PhoneDescription& phone) {
    for (const auto& [name, value] : PropertiesOf(options)) {
        phone.properties[name] = value;
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

}  // namespace zvcam
