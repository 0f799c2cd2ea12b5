#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "record/BootRecord.h"

namespace analysis {

/// An operation that the plug-in runs after another one, in a fixed order.
struct Operation {
    std::string_view name;
    /// Logs a line before it asks the platform for anything. What happens between the last trace of the
    /// operation before and the first trace of this one is then the other's.
    bool opensWithALine;
};

/// The step of a boot that updates the devices, one after the other.
inline constexpr std::string_view kDeviceWalk = "MetadataUpdate";

/// The nine steps of a boot, in their order.
std::span<const Operation> BootSteps();

/// What fills the metadata of one device, in its order.
std::span<const Operation> DeviceSteps();

/// The step that runs an operation: itself, or the one that calls it and is the only one to do so.
/// Empty for helpers that several steps share, and for names that are none of the plug-in's.
std::string_view StepOf(std::string_view operation);

/// The names of all operations that belong to one step.
std::vector<std::string> OperationNames();

/// A run of events that one step caused.
struct Step {
    std::string_view name;
    /// Which device update it belongs to, counted from 0; none outside of them.
    std::optional<std::size_t> device;
    std::size_t first = 0;
    std::size_t end = 0;  ///< one past the last event
};

/// One device whose metadata the plug-in filled, as the walk announced it in the log.
struct DeviceUpdate {
    std::uint32_t provider = 0;
    int logicalIndex = 0;         ///< of the device, for a member of the device that it belongs to
    std::optional<int> memberId;  ///< the member's sensor id; none for the logical device itself
    std::size_t first = 0;        ///< its events
    std::size_t end = 0;
    /// What was merged; null where the boot ended before.
    const record::ProviderMerge* merge = nullptr;
};

/// The events of a boot cut into steps and device updates, both in order. Every event from the first one that
/// a step left a trace of belongs to exactly one step.
struct Course {
    std::vector<Step> steps;
    std::vector<DeviceUpdate> devices;
};

/// The first step of this name; of a device's, that of this update. Null where the boot did not come to it.
const Step* FindStep(const Course& course, std::string_view name, std::optional<std::size_t> device = {});

/// The course holds pointers into `boot`.
Course CourseOf(const record::BootRecord& boot);

}  // namespace analysis
