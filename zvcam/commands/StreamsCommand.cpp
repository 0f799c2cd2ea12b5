#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/TagContents.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Named.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/StreamsView.h"

namespace zvcam {

namespace {

struct StreamsOptions {
    BootOptions boot;
    std::string device;
    std::string format;
    bool csv = false;
};

std::string CheckFormat(const std::string& text) {
    return analysis::FormatNamed(text)
               ? ""
               : "expected a format such as YCBCR_420_888, YUV, JPEG or 0x23, got \"" + text + "\"";
}

int Run(const StreamsOptions& options) {
    const std::optional<std::int64_t> format =
        options.format.empty() ? std::nullopt : analysis::FormatNamed(options.format);
    const analysis::Boot boot = Obtain(options.boot);
    const std::vector<analysis::Device> devices = analysis::DevicesOf(boot, analysis::CourseOf(boot.record));
    const std::size_t chosen =
        options.device.empty() ? devices.size() : DeviceNamed(options.device, devices, boot.record);
    PrintOut([&](std::ostream& out) {
        if (options.csv) {
            out << kStreamColumns << '\n';
        } else if (chosen == devices.size()) {
            PrintStreamOverview(out, devices, format);
            out << "Each size with its durations: --device; all of them: --csv.\n";
            return;
        }
        for (std::size_t i = 0; i < devices.size(); ++i) {
            if (chosen == devices.size() || chosen == i) {
                (options.csv ? PrintStreamsAsCsv : PrintStreams)(out, devices[i], format);
            }
        }
    });
    return ExitStatusOf(boot);
}

}  // namespace

void AddStreamsCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<StreamsOptions>();
    CLI::App* const command =
        app.add_subcommand("streams", "Print the stream configurations that the devices offer");
    AddBootOptions(*command, options->boot);
    command
        ->add_option("--device", options->device,
                     "Each configuration of device N, or of its member M, with its durations in ms")
        ->type_name("N[/M]")
        ->check(CheckName);
    command->add_option("--format", options->format, "Only this format: YUV, JPEG, RAW10, 0x23 ...")
        ->type_name("NAME")
        ->check(CheckFormat);
    command->add_flag("--csv", options->csv, "Print comma-separated values");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
