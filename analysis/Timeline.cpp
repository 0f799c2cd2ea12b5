#include "analysis/Timeline.h"

#include <algorithm>
#include <variant>

#include "analysis/LogWords.h"

namespace analysis {

namespace {

EventRun EventRunOf(const record::BootRecord& boot, std::size_t first, std::size_t end) {
    EventRun run;
    run.first = first;
    run.end = end;
    for (std::size_t i = first; i < end; ++i) {
        const record::Event& event = boot.events[i];
        if (const auto* const line = std::get_if<record::LogLine>(&event)) {
            ++run.lines;
            if (IsError(*line) && !IsOnEveryPhone(*line)) {
                run.errors.push_back(i);
            }
        } else if (std::holds_alternative<record::PropertySet>(event)) {
            ++run.properties;
        } else if (std::holds_alternative<record::TagStored>(event)) {
            ++run.tags;
        } else if (!std::holds_alternative<record::ProviderMerge>(event) &&
                   !std::holds_alternative<record::HandOver>(event)) {
            ++run.questions;
        }
    }
    return run;
}

}  // namespace

std::optional<Timeline> TimelineOf(const record::BootRecord& boot, const Course& course) {
    if (!boot.ordered) {
        return std::nullopt;
    }
    Timeline timeline{.events = boot.events.size(), .steps = {}, .devices = {}};
    for (const DeviceUpdate& device : course.devices) {
        timeline.devices.push_back(EventRunOf(boot, device.first, device.end));
    }
    for (const Operation& operation : BootSteps()) {
        TimelineStep& step = timeline.steps.emplace_back(TimelineStep{.name = operation.name, .run = {}});
        // The walk's own events stand before and behind those of its devices, which a boot may end in.
        std::optional<std::size_t> first;
        std::size_t end = 0;
        for (const Step& part : course.steps) {
            if (!part.device && part.name == step.name) {
                first = std::min(first.value_or(part.first), part.first);
                end = std::max(end, part.end);
                if (!course.devices.empty() && part.end == course.devices.front().first) {
                    end = course.devices.back().end;
                }
            }
        }
        if (first) {
            step.run = EventRunOf(boot, *first, end);
        }
    }
    return timeline;
}

}  // namespace analysis
