#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "analysis/Steps.h"

namespace analysis {

/// A run of events, and what happened in it.
struct EventRun {
    std::size_t first = 0;       ///< event
    std::size_t end = 0;         ///< one past the last event
    std::size_t questions = 0;   ///< asked of the platform: properties, lists, modules, files
    std::size_t lines = 0;       ///< logged
    std::size_t properties = 0;  ///< set or refused
    std::size_t tags = 0;        ///< stored or refused
    /// The events that are errors, those left out that every phone has.
    std::vector<std::size_t> errors;

    std::size_t events() const { return end - first; }
};

/// A step of the boot, or of the device walk.
struct TimelineStep {
    std::string_view name;
    std::optional<EventRun> run;  ///< none: the boot did not come to it, or it left no trace
};

/// What a boot did when, counted in events: a record has their order, not their times.
struct Timeline {
    std::size_t events = 0;
    std::vector<TimelineStep> steps;  ///< the nine of a boot, in their order
    std::vector<EventRun> devices;    ///< of the walk, in its order: one a device of the course
};

/// None for a record without one order of its events.
std::optional<Timeline> TimelineOf(const record::BootRecord& boot, const Course& course);

}  // namespace analysis
