#include "analysis/Devices.h"

#include <algorithm>
#include <charconv>

#include "analysis/LogWords.h"
#include "tables/CameraDevices.h"
#include "tables/PublishedTags.h"

namespace analysis {

namespace {

/// The role that the device table has for an instance id; none for an unknown one.
std::optional<int> RoleInTable(int instanceId) {
    const auto* const found =
        std::find_if(tables::kCameraDevices.begin(), tables::kCameraDevices.end(),
                     [=](const tables::CameraDevice& row) { return row.deviceId == instanceId; });
    return found == tables::kCameraDevices.end() ? std::nullopt : std::optional(found->camera.roleId);
}

/// Whether the column of roles that a tag starts with, "61, 63, 81 with two members", has this one; a column
/// without roles is about all.
bool ListsRole(std::string_view devices, int role) {
    bool some = false;
    for (int listed = 0;;) {
        const auto [end, error] = std::from_chars(devices.data(), devices.data() + devices.size(), listed);
        if (error != std::errc()) {
            return !some;
        }
        if (listed == role) {
            return true;
        }
        some = true;
        devices.remove_prefix(static_cast<std::size_t>(end - devices.data()));
        devices.remove_prefix(std::min(devices.size(), devices.find_first_not_of(", ")));
    }
}

/// Whether only some of the devices that a tag is for get it, as their modules are.
bool IsConditional(const tables::PublishedTag& row) {
    const std::string_view devices = row.devices;
    return devices.starts_with("those") || devices.find("whose") != std::string_view::npos;
}

/// @param steps those of the device's update.
std::vector<MissingTags> MissingOf(const Boot& boot, std::span<const Step> steps, const Device& device) {
    std::vector<MissingTags> missing;
    for (const Step& step : steps) {
        const record::LogLine* const error = LastErrorOf(boot.record, step);
        if (error == nullptr) {
            continue;
        }
        std::vector<std::uint32_t> conditional;
        MissingTags tags{.step = step.name, .tags = {}, .reason = InWords(*error)};
        for (const tables::PublishedTag& row : tables::PublishedTags()) {
            if (row.operation.step == step.name && FindTag(*device.metadata, row.tag) == nullptr &&
                AppliesTo(row.tag, device)) {
                (IsConditional(row) ? conditional : tags.tags).push_back(row.tag);
            }
        }
        if (tags.tags.empty()) {
            tags.tags = std::move(conditional);
        }
        if (!tags.tags.empty()) {
            missing.push_back(std::move(tags));
        }
    }
    return missing;
}

/// What the logical device list knows of a device; null where the description does not say.
const virtualphone::LogicalDeviceDescription* DescriptionOf(const Boot& boot, int logicalIndex) {
    if (!boot.phone || logicalIndex < 0 ||
        static_cast<std::size_t>(logicalIndex) >= boot.phone->logicalDevices.size()) {
        return nullptr;
    }
    return &boot.phone->logicalDevices[static_cast<std::size_t>(logicalIndex)];
}

}  // namespace

std::vector<Device> DevicesOf(const Boot& boot, const Course& course) {
    std::vector<Device> devices;
    // The steps of one device stand together, and those of the devices in their order.
    auto step = course.steps.begin();
    for (std::size_t i = 0; i < course.devices.size(); ++i) {
        const auto first = std::find_if(step, course.steps.end(),
                                        [i](const Step& each) { return each.device && *each.device >= i; });
        step = std::find_if(first, course.steps.end(), [i](const Step& each) { return each.device != i; });
        const DeviceUpdate& update = course.devices[i];
        Device& device = devices.emplace_back();
        device.provider = update.provider;
        device.logicalIndex = update.logicalIndex;
        device.memberId = update.memberId;
        const virtualphone::LogicalDeviceDescription* const description =
            DescriptionOf(boot, update.logicalIndex);
        if (!update.memberId && description != nullptr) {
            device.name = ShortDeviceName(description->name);
            for (const tables::MemberSensorId member : description->members) {
                device.members.push_back(tables::Number(member));
            }
        }
        if (update.merge == nullptr) {
            continue;
        }
        device.metadata = &update.merge->metadata;
        if (const record::Tag* const role = FindTag(*device.metadata, ZELVAN_CAMERA_ROLEID)) {
            const std::span<const std::int32_t> items = role->values.as<std::int32_t>();
            device.role = items.empty() ? std::nullopt : std::optional<int>(items[0]);
        }
        device.missing = MissingOf(boot, {first, step}, device);
    }
    return devices;
}

std::string WhyNoDevices(const Boot& boot, const Course& course) {
    if (!course.devices.empty() || !record::EventsOf<record::ProviderMerge>(boot.record).empty()) {
        return {};
    }
    const Step* const walk = FindStep(course, kDeviceWalk);
    if (walk == nullptr) {
        return "the boot did not come to them";
    }
    const record::LogLine* const error = LastErrorOf(boot.record, *walk);
    return error != nullptr  ? InWords(*error)
           : boot.cutShort() ? "the boot ended before the first"
                             : "the logical device list has none";
}

std::map<std::uint32_t, record::TagSet> EndStates(const Boot& boot) {
    std::map<std::uint32_t, record::TagSet> states;
    if (boot.phone) {
        for (const auto& [provider, set] : boot.phone->staticMetadata) {
            states[tables::Number(provider)] = set;
        }
    }
    for (const record::ProviderMerge* const merge : record::EventsOf<record::ProviderMerge>(boot.record)) {
        record::TagSet& state = states[merge->provider];
        record::TagSet merged;
        std::set_union(merge->metadata.begin(), merge->metadata.end(), state.begin(), state.end(),
                       std::back_inserter(merged), [](const record::Tag& left, const record::Tag& right) {
                           return left.tag < right.tag;
                       });
        state = std::move(merged);
    }
    return states;
}

std::string DeviceNumber(int logicalIndex, const std::optional<int>& memberId) {
    return std::to_string(logicalIndex) + (memberId ? "/" + std::to_string(*memberId) : "");
}

std::optional<std::size_t> FindDevice(std::string_view text, const std::vector<Device>& devices) {
    const auto found = std::find_if(devices.begin(), devices.end(), [=](const Device& device) {
        return DeviceNumber(device.logicalIndex, device.memberId) == text;
    });
    return found == devices.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - devices.begin()));
}

std::string ShortDeviceName(std::string_view platformName) {
    constexpr std::string_view kLead = "SENSOR_DRVNAME_";
    const std::size_t phone = platformName.find('_', kLead.size());
    return std::string(platformName.starts_with(kLead) && phone != std::string_view::npos
                           ? platformName.substr(phone + 1)
                           : platformName);
}

bool AppliesTo(std::uint32_t tag, const Device& device) {
    const tables::PublishedTag* const row = tables::FindPublishedTag(tag);
    if (row == nullptr) {
        return false;
    }
    const std::optional<int> inTable = RoleInTable(device.memberId.value_or(device.logicalIndex));
    return (inTable && ListsRole(row->devices, *inTable)) ||
           (device.role && ListsRole(row->devices, *device.role));
}

const record::LogLine* LastErrorOf(const record::BootRecord& boot, const Step& step) {
    for (std::size_t i = step.end; i > step.first; --i) {
        const auto* const line = std::get_if<record::LogLine>(&boot.events[i - 1]);
        if (line != nullptr && IsError(*line) && !IsOnEveryPhone(*line)) {
            return line;
        }
    }
    return nullptr;
}

const record::Tag* FindTag(const record::TagSet& set, std::uint32_t tag) {
    const auto found =
        std::lower_bound(set.begin(), set.end(), tag,
                         [](const record::Tag& entry, std::uint32_t wanted) { return entry.tag < wanted; });
    return found == set.end() || found->tag != tag ? nullptr : &*found;
}

}  // namespace analysis
