#include "analysis/Steps.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"

namespace analysis {

namespace {

constexpr std::string_view kEepromDump = "DumpEepromRawData";

constexpr std::array<Operation, 9> kBootSteps = {{
    {"SetModuleInfoProp", true},
    {"SetFuseIdProp", true},
    {"SetSensorInfoProp", false},
    {"SetAFInfoProp", false},
    {"OverriderDualCamCalData", true},
    {"OverriderOisCamCalData", false},
    {"setDataBinGroupProperty", false},
    {kDeviceWalk, true},
    {kEepromDump, false},
}};

constexpr std::array<Operation, 16> kDeviceSteps = {{
    {"MetadataUpdateRoleId", false},
    {"MetadataUpdateCheckSumResult", false},
    {"MetadataUpdateScaler", true},
    {"MetedataUpdateCalibData", true},
    {"MetedataUpdateVideoStabilizationData", false},
    {"MetedataUpdateVNQualityData", false},
    {"MetadataUpdateCalibrationToolTag", true},
    {"UpdateBokehOptimalSizeInfo", true},
    {"UpdatePhotoStyleInfo", true},
    {"MetadataUpdateFakeSatSizes", true},
    {"MetadataUpdateHDHDR", false},
    {"MetadataUpdateSmartFOVZoomRatio", false},
    {"MetadataUpdateBeautyData", false},
    {"MetedataUpdateVideoTrackAFQualityData", false},
    {"MetedataUpdateSatInfo", false},
    {"MetadataUpdateFocalLength35mm", true},
}};

/// An operation that one step alone runs.
struct Called {
    std::string_view name;
    std::string_view step;
};
/// Those that store nothing.
constexpr std::array<Called, 10> kCalled = {{
    {"DualCameraDataFromEeprom", "OverriderDualCamCalData"},
    {"DualCameraDataFromPersist", "OverriderDualCamCalData"},
    {"DualCameraDataFromGolden", "OverriderDualCamCalData"},
    {"GetDualCameraPersistFiles", "OverriderDualCamCalData"},
    {"MatchDualCameraPersistFile", "OverriderDualCamCalData"},
    {"GetRoleIdByFuseId", "OverriderDualCamCalData"},
    {"readOTPOisParam", "OverriderOisCamCalData"},
    {"GetOisParamFromPersist", "OverriderOisCamCalData"},
    {"GetCalibDataFromDumpFile", "MetedataUpdateCalibData"},
    {"matchDrvNameToPlatformDrvName", "MetedataUpdateCalibData"},
}};

/// All operations that belong to one step.
const std::vector<Called>& AllCalled() {
    static const std::vector<Called> kAll = [] {
        std::vector<Called> all(kCalled.begin(), kCalled.end());
        for (const std::span<const Operation> steps : {BootSteps(), DeviceSteps()}) {
            for (const Operation& step : steps) {
                all.push_back({step.name, step.name});
            }
        }
#define OPERATION(name, step, sourceFile) all.push_back({#name, #step});
#include "tables/PublishingOperations.inc"
#undef OPERATION
        return all;
    }();
    return kAll;
}

const Operation* Find(std::span<const Operation> operations, std::string_view name) {
    const auto found = std::find_if(operations.begin(), operations.end(),
                                    [=](const Operation& operation) { return name == operation.name; });
    return found == operations.end() ? nullptr : &*found;
}

/// The number that follows `key` in a line; none where the line is another one.
std::optional<std::uint32_t> NumberAfter(std::string_view text, std::string_view key, int base) {
    const std::size_t at = text.find(key);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(at + key.size());
    std::uint32_t number = 0;
    return std::from_chars(text.data(), text.data() + text.size(), number, base).ec == std::errc()
               ? std::optional(number)
               : std::nullopt;
}

/// The step that an event is a trace of; empty where it may be anyone's.
std::string_view TracedStep(const record::Event& event) {
    if (const auto* const line = std::get_if<record::LogLine>(&event)) {
        return StepOf(record::OperationOf(*line));
    }
    if (const auto* const set = std::get_if<record::PropertySet>(&event)) {
        const tables::PublishedProperty* const row = tables::FindPublishedProperty(set->name);
        return row == nullptr ? std::string_view() : row->operation.step;
    }
    if (const auto* const stored = std::get_if<record::TagStored>(&event)) {
        const tables::PublishedTag* const row = tables::FindPublishedTag(stored->tag);
        return row == nullptr ? std::string_view() : row->operation.step;
    }
    const auto* const asked = std::get_if<record::PropertyAsked>(&event);
    return asked != nullptr && asked->name == tables::kEepromDumpProperty ? kEepromDump : std::string_view();
}

/// Cuts a run of events into the steps that left their traces in it.
void CutIntoSteps(const record::BootRecord& boot, std::size_t first, std::size_t end,
                  std::optional<std::size_t> device, std::vector<Step>& steps) {
    const std::size_t before = steps.size();
    std::size_t traced = first;  // one past the last trace
    for (std::size_t i = first; i < end; ++i) {
        const std::string_view name = TracedStep(boot.events[i]);
        const Operation* const operation = Find(device ? DeviceSteps() : BootSteps(), name);
        if (operation == nullptr) {
            continue;
        }
        if (steps.size() == before || steps.back().name != name) {
            const std::size_t start = operation->opensWithALine ? i : traced;
            if (steps.size() > before) {
                steps.back().end = start;
            }
            steps.push_back({.name = operation->name, .device = device, .first = start, .end = end});
        }
        traced = i + 1;
    }
}

/// The logical index or unique id that the device walk announces in a line.
std::optional<DeviceUpdate> AnnouncedDevice(const record::Event& event, int logicalIndex) {
    const auto* const line = std::get_if<record::LogLine>(&event);
    if (line == nullptr || record::OperationOf(*line) != kDeviceWalk) {
        return std::nullopt;
    }
    const std::string_view text = record::TextOf(*line);
    if (const auto index = NumberAfter(text, "instanceId = ", 10)) {
        return DeviceUpdate{.provider = *index, .logicalIndex = static_cast<int>(*index), .memberId = {}};
    }
    if (const auto id = NumberAfter(text, "physicalUniqueId = 0x", 16)) {
        return DeviceUpdate{
            .provider = *id, .logicalIndex = logicalIndex, .memberId = static_cast<int>(*id >> 8 & 0xFF)};
    }
    return std::nullopt;
}

bool IsMerge(const record::Event& event) {
    return std::holds_alternative<record::ProviderMerge>(event);
}

/// The devices that the walk announced. A report without one order has its merges behind all lines: they are
/// dealt out as they come.
std::vector<DeviceUpdate> DevicesOf(const record::BootRecord& boot) {
    std::vector<DeviceUpdate> devices;
    int logicalIndex = 0;
    for (std::size_t i = 0; i < boot.events.size(); ++i) {
        if (std::optional<DeviceUpdate> device = AnnouncedDevice(boot.events[i], logicalIndex)) {
            if (!devices.empty() && devices.back().end == 0) {
                devices.back().end = i;
            }
            logicalIndex = device->logicalIndex;
            device->first = i;
            devices.push_back(*device);
        } else if (boot.ordered && IsMerge(boot.events[i]) && !devices.empty()) {
            devices.back().end = i + 1;
        }
    }
    const std::vector<const record::ProviderMerge*> merges = record::EventsOf<record::ProviderMerge>(boot);
    for (std::size_t i = 0; i < devices.size(); ++i) {
        devices[i].merge = i < merges.size() ? merges[i] : nullptr;
        if (devices[i].end == 0) {
            devices[i].end = boot.events.size();
        }
    }
    return devices;
}

}  // namespace

std::span<const Operation> BootSteps() {
    return kBootSteps;
}

std::span<const Operation> DeviceSteps() {
    return kDeviceSteps;
}

std::string_view StepOf(std::string_view operation) {
    const std::vector<Called>& all = AllCalled();
    const auto found =
        std::find_if(all.begin(), all.end(), [=](const Called& row) { return row.name == operation; });
    return found == all.end() ? std::string_view() : found->step;
}

std::vector<std::string> OperationNames() {
    std::vector<std::string> names;
    for (const Called& row : AllCalled()) {
        names.emplace_back(row.name);
    }
    return names;
}

const Step* FindStep(const Course& course, std::string_view name, std::optional<std::size_t> device) {
    const auto found = std::find_if(course.steps.begin(), course.steps.end(), [&](const Step& step) {
        return step.name == name && (!device || step.device == device);
    });
    return found == course.steps.end() ? nullptr : &*found;
}

Course CourseOf(const record::BootRecord& boot) {
    Course course;
    course.devices = DevicesOf(boot);
    const std::size_t walk = course.devices.empty() ? boot.events.size() : course.devices.front().first;
    CutIntoSteps(boot, 0, walk, std::nullopt, course.steps);
    for (std::size_t i = 0; i < course.devices.size(); ++i) {
        CutIntoSteps(boot, course.devices[i].first, course.devices[i].end, i, course.steps);
    }
    if (!course.devices.empty()) {
        CutIntoSteps(boot, course.devices.back().end, boot.events.size(), std::nullopt, course.steps);
    }
    return course;
}

}  // namespace analysis
