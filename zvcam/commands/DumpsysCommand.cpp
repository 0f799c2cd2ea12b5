#include <algorithm>
#include <cstdint>
#include <memory>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/Devices.h"
#include "formats/Hex.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Named.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/MetadataView.h"

namespace zvcam {

namespace {

struct DumpsysOptions {
    BootOptions boot;
    std::string device;
    std::string provider;
    std::string tag;
};

std::string CheckProvider(const std::string& text) {
    return formats::ParseNumber(text) ? "" : "expected a number such as 0x40007, got \"" + text + "\"";
}

/// Says on standard error that nothing that was printed holds the tags that were asked for.
void SayMissing(const std::string& tag, const std::string& holder) {
    Complain(holder + " " + tag + "; `zvcam why` tells the reason");
}

bool HoldsAny(const record::TagSet& metadata, const std::set<std::uint32_t>& only) {
    return std::any_of(metadata.begin(), metadata.end(),
                       [&only](const record::Tag& tag) { return only.contains(tag.tag); });
}

int Run(const DumpsysOptions& options) {
    const std::set<std::uint32_t> only = TagsNamed(options.tag);
    const analysis::Boot boot = Obtain(options.boot);
    if (!options.provider.empty()) {
        const auto states = analysis::EndStates(boot);
        const auto state = states.find(formats::ParseNumber(options.provider).value());
        if (state == states.end()) {
            throw std::runtime_error("no provider " + options.provider + " holds anything");
        }
        PrintOut([&](std::ostream& out) { PrintProvider(out, state->first, state->second, only); });
        if (!only.empty() && !HoldsAny(state->second, only)) {
            SayMissing(options.tag, "provider " + options.provider + " holds no");
        }
        return ExitStatusOf(boot);
    }
    const std::vector<analysis::Device> devices = analysis::DevicesOf(boot, analysis::CourseOf(boot.record));
    const std::size_t chosen =
        options.device.empty() ? devices.size() : DeviceNamed(options.device, devices, boot.record);
    bool found = only.empty();
    PrintOut([&](std::ostream& out) {
        for (std::size_t i = 0; i < devices.size(); ++i) {
            const bool isAsked = chosen == devices.size() || chosen == i;
            if (isAsked &&
                (only.empty() || (devices[i].metadata != nullptr && HoldsAny(*devices[i].metadata, only)))) {
                PrintDevice(out, devices[i], only);
                found = true;
            }
        }
    });
    if (!found) {
        SayMissing(options.tag,
                   options.device.empty() ? "no device has" : "device " + options.device + " has no");
    }
    return ExitStatusOf(boot);
}

}  // namespace

void AddDumpsysCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<DumpsysOptions>();
    CLI::App* const command =
        app.add_subcommand("dumpsys", "Print the static metadata as `dumpsys media.camera` does");
    AddBootOptions(*command, options->boot);
    CLI::Option* const device =
        command
            ->add_option("--device", options->device, "What was published for device N, or for its member M")
            ->type_name("N[/M]")
            ->check(CheckName);
    command->add_option("--provider", options->provider, "What this provider holds after the boot")
        ->type_name("ID")
        ->check(CheckProvider)
        ->excludes(device);
    command->add_option("--tag", options->tag, "Only this tag, by name, end of a name, or number")
        ->type_name("TAG")
        ->check(CheckName);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
