#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/Boot.h"
#include "analysis/Steps.h"

namespace analysis {

/// Tags that a device would have had one of its steps not given up; those that only some modules bring count
/// where the step has no others.
struct MissingTags {
    std::string_view step;
    std::vector<std::uint32_t> tags;
    std::string reason;  ///< in words
};

/// What became of the device of one update.
struct Device {
    std::uint32_t provider = 0;
    int logicalIndex = 0;                      ///< a member's: that of the device that it belongs to
    std::optional<int> memberId;               ///< sensor id of a member; none for the logical device
    std::string name;                          ///< "BACK_SAT"; empty for a member, and where nobody says
    std::optional<int> role;                   ///< as it was published
    std::vector<int> members;                  ///< sensor ids, master first; empty for a member
    const record::TagSet* metadata = nullptr;  ///< null: the boot ended before the merge
    std::vector<MissingTags> missing;
};

/// The devices in the order of their updates. They hold pointers into `boot`.
std::vector<Device> DevicesOf(const Boot& boot, const Course& course);

/// Why the device walk updated no device, in words; empty where it updated one.
std::string WhyNoDevices(const Boot& boot, const Course& course);

/// What each provider holds after the boot, by provider id: what it held before, and every merge on top, a
/// later one over an earlier. The description's share is missing in a boot without it.
std::map<std::uint32_t, record::TagSet> EndStates(const Boot& boot);

/// "4" for a logical device, "4/3" for its member with sensor id 3.
std::string DeviceNumber(int logicalIndex, const std::optional<int>& memberId);

/// The device that a person names as `DeviceNumber` does; none for another text.
/// @return its position.
std::optional<std::size_t> FindDevice(std::string_view text, const std::vector<Device>& devices);

/// "BACK_SAT" of "SENSOR_DRVNAME_HALCYRION_BACK_SAT"; any other name as it is.
std::string ShortDeviceName(std::string_view platformName);

/// Whether a device gets the tag on some phone: its role as published, or as the device table has it, is
/// among the tag's.
bool AppliesTo(std::uint32_t tag, const Device& device);

/// The error with which a step gave up: its last one that not every phone has; null where it had none.
const record::LogLine* LastErrorOf(const record::BootRecord& boot, const Step& step);

const record::Tag* FindTag(const record::TagSet& set, std::uint32_t tag);

}  // namespace analysis
