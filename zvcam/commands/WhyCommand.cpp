#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/Devices.h"
#include "analysis/Why.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Named.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/WhyView.h"

namespace zvcam {

namespace {

struct WhyOptions {
    BootOptions boot;
    std::string item;
    std::string device;
};

/// The device whose tag is asked about: the one that the user names, else the first logical device that has
/// it, else the first that it applies to.
std::size_t DeviceOf(const WhyOptions& options, const std::vector<analysis::Device>& devices,
                     const record::BootRecord& boot) {
    if (!options.device.empty()) {
        return DeviceNamed(options.device, devices, boot);
    }
    const auto first = [&](const auto& wanted) {
        return static_cast<std::size_t>(std::find_if(devices.begin(), devices.end(), wanted) -
                                        devices.begin());
    };
    const std::uint32_t tag = ItemNamed(options.item, nullptr).tag;
    const std::size_t with = first([=](const analysis::Device& device) {
        return device.metadata != nullptr && analysis::FindTag(*device.metadata, tag) != nullptr;
    });
    const std::size_t meant =
        first([=](const analysis::Device& device) { return analysis::AppliesTo(tag, device); });
    return with < devices.size() ? with : meant < devices.size() ? meant : 0;
}

int Run(const WhyOptions& options) {
    const analysis::Item named = ItemNamed(options.item, nullptr);
    const analysis::Boot boot = Obtain(options.boot);
    const analysis::Course course = analysis::CourseOf(boot.record);
    const std::vector<analysis::Device> devices = analysis::DevicesOf(boot, course);
    const bool ofDevice = named.kind == analysis::Item::Kind::Tag && !devices.empty();
    const std::size_t device = ofDevice ? DeviceOf(options, devices, boot.record) : 0;
    const analysis::Item item = ofDevice ? ItemNamed(options.item, &devices[device]) : named;
    const analysis::Reason reason = analysis::WhyOf(boot, course, devices, item, device);
    PrintOut([&](std::ostream& out) { PrintReason(out, reason, boot.record, OutputStyle()); });
    return ExitStatusOf(boot);
}

}  // namespace

void AddWhyCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<WhyOptions>();
    CLI::App* const command =
        app.add_subcommand("why", "Explain who published a property, file or tag, or why nobody did");
    AddBootOptions(*command, options->boot);
    command
        ->add_option(
            "ITEM", options->item,
            "A property, a path, a tag by name or number; the end of a name does where it is the only one")
        ->required()
        ->check(CheckName);
    command
        ->add_option("--device", options->device,
                     "The device whose tag is meant, or its member M; without it the first that has it")
        ->type_name("N[/M]")
        ->check(CheckName);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
