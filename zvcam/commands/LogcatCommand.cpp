#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "analysis/Steps.h"
#include "analysis/Why.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Named.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/LogView.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

struct LogcatOptions {
    BootOptions boot;
    std::vector<std::string> rules;
    std::string device;
    std::string operation;
};

std::string CheckRule(const std::string& text) {
    return LogFilter().add(text)
               ? ""
               : "expected TAG, TAG:PRIORITY or *:PRIORITY (V, D, I, W, E, F, S), got \"" + text + "\"";
}

/// Which events a step or an operation of it caused.
std::vector<bool> EventsOfOperation(const record::BootRecord& boot, const analysis::Course& course,
                                    const std::string& operation) {
    std::vector<bool> wanted(boot.events.size(), false);
    for (const analysis::Step& step : course.steps) {
        for (std::size_t i = step.first; step.name == operation && i < step.end; ++i) {
            wanted[i] = true;
        }
    }
    for (std::size_t i = 0; i < boot.events.size(); ++i) {
        const auto* const line = std::get_if<record::LogLine>(&boot.events[i]);
        wanted[i] = wanted[i] || (line != nullptr && record::OperationOf(*line) == operation);
    }
    return wanted;
}

/// Says on standard error why an operation has no lines.
/// @throws std::runtime_error for one that there is not.
void SayNothing(const std::string& operation) {
    const std::vector<std::string> names = analysis::OperationNames();
    if (std::find(names.begin(), names.end(), operation) == names.end()) {
        throw std::runtime_error("--step: no operation is called \"" + Printable(operation) + "\"" +
                                 NearWords(analysis::NamesNear(names, operation)));
    }
    Complain(operation + " logged nothing in this boot");
}

int Run(const LogcatOptions& options) {
    LogFilter filter;
    for (const std::string& rule : options.rules) {
        filter.add(rule);
    }
    const analysis::Boot boot = Obtain(options.boot);
    const analysis::Course course = analysis::CourseOf(boot.record);
    std::vector<bool> wanted(boot.record.events.size(), true);
    if (!options.operation.empty()) {
        wanted = EventsOfOperation(boot.record, course, options.operation);
        if (std::find(wanted.begin(), wanted.end(), true) == wanted.end()) {
            SayNothing(options.operation);
        }
    }
    std::size_t first = 0;
    std::size_t end = boot.record.events.size();
    if (!options.device.empty()) {
        const analysis::DeviceUpdate& device =
            course.devices[DeviceNamed(options.device, analysis::DevicesOf(boot, course), boot.record)];
        first = device.first;
        end = device.end;
    }
    PrintOut([&](std::ostream& out) {
        for (std::size_t i = first; i < end; ++i) {
            const auto* const line = std::get_if<record::LogLine>(&boot.record.events[i]);
            if (line != nullptr && wanted[i] && filter.shows(*line)) {
                PrintLogLine(out, *line);
            }
        }
    });
    return ExitStatusOf(boot);
}

}  // namespace

void AddLogcatCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<LogcatOptions>();
    CLI::App* const command =
        app.add_subcommand("logcat", "Print the log of the boot, in logcat's brief form");
    AddBootOptions(*command, options->boot);
    command->add_option("FILTERSPEC", options->rules, "As for Android's logcat: TAG:PRIORITY, *:S")
        ->check(CheckRule);
    command->add_option("--device", options->device, "Only while device N, or its member M, was updated")
        ->type_name("N[/M]")
        ->check(CheckName);
    command
        ->add_option("--step", options->operation,
                     "Only what this operation of the plug-in logged, with what it called")
        ->type_name("OPERATION")
        ->check(CheckName);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
