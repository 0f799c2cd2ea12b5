#include <cstdint>
#include <memory>
#include <ostream>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/Why.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Output.h"
#include "zvcam/views/MetadataView.h"

namespace zvcam {

namespace {

struct DumpsysOptions {
    BootOptions boot;
    std::string device;
    std::string provider;
    std::string tag;
};

/// The number of a text such as "0x40007" or "7".
std::uint32_t NumberOf(const std::string& text) {
    try {
        std::size_t end = 0;
        const unsigned long number = std::stoul(text, &end, 0);
        if (end == text.size() && text[0] != '-' && number <= UINT32_MAX) {
            return static_cast<std::uint32_t>(number);
        }
    } catch (const std::logic_error&) {
        // Said below.
    }
    throw std::runtime_error("expected a number, got \"" + text + "\"");
}

/// The tags that a text names; none of them for an empty text, which asks for all.
std::set<std::uint32_t> TagsNamed(const std::string& text) {
    std::set<std::uint32_t> tags;
    for (const analysis::Item& item : analysis::ItemsNamed(text)) {
        if (!text.empty() && item.kind == analysis::Item::Kind::Tag) {
            tags.insert(item.tag);
        }
    }
    if (!text.empty() && tags.empty()) {
        tags.insert(NumberOf(text));
    }
    return tags;
}

int Run(const DumpsysOptions& options) {
    const std::set<std::uint32_t> only = TagsNamed(options.tag);
    const analysis::Boot boot = Obtain(options.boot);
    if (!options.provider.empty()) {
        const auto states = analysis::EndStates(boot);
        const auto state = states.find(NumberOf(options.provider));
        if (state == states.end()) {
            throw std::runtime_error("no provider " + options.provider + " holds anything");
        }
        PrintOut([&](std::ostream& out) { PrintProvider(out, state->first, state->second, only); });
        return ExitStatusOf(boot);
    }
    const std::vector<analysis::Device> devices = analysis::DevicesOf(boot, analysis::CourseOf(boot.record));
    const std::size_t chosen = options.device.empty() ? devices.size() : DeviceNamed(options.device, devices);
    PrintOut([&](std::ostream& out) {
        for (std::size_t i = 0; i < devices.size(); ++i) {
            if (chosen == devices.size() || chosen == i) {
                PrintDevice(out, devices[i], only);
            }
        }
    });
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
            ->check(CheckNotEmpty);
    command->add_option("--provider", options->provider, "What this provider holds after the boot")
        ->type_name("ID")
        ->check(CheckNotEmpty)
        ->excludes(device);
    command->add_option("--tag", options->tag, "Only this tag, by name, end of a name, or number")
        ->type_name("TAG")
        ->check(CheckNotEmpty);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
