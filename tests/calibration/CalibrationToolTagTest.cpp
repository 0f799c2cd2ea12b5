#include "platforminfo/Entry.h"
#include "tests/calibration/CalibrationBytes.h"

namespace {

using NSCam::IMetadata;

constexpr const char* kType = "0x91010022";
constexpr const char* kFileName = "0x91010023";
constexpr const char* kDriverValues = "0x91010024";

/// Sensors 0 to 2 have device ids 7, 2 and 3; all logical devices have the same members. Device 5 is the
/// bokeh device with the tele camera, 6 the one with the ultra-wide.
PhoneBuilder Phone(const std::vector<int>& members, const Faults& faults = {}) {
    return PhoneBuilder()
        .sensors({{.deviceId = 7, .modes = {{0, {4096, 3072}}, {1, {1, 2}}}},
                  {.deviceId = 2, .modes = {{0, {65535, 40000}}}},
                  {.deviceId = 3, .modes = {{0, {10, 20}}}}})
        .devices(std::vector<LogicalDevice>(9, {.sensorIds = members, .multiSensor = true}))
        .faults(faults);
}

std::string NameText(const std::string& name) {
    std::string text = "byte [";
    for (std::size_t i = 0; i < 128; ++i) {
        text += (i == 0 ? "" : ", ") + std::to_string(i < name.size() ? name[i] : 0);
    }
    return text + "]";
}

TEST(CalibrationToolTag, TagsOfTheBokehDevices) {
    const std::string lead = "[MetadataUpdateCalibrationToolTag] ";
    const std::pair<std::string, std::string> type{kType, "byte [2]"};
    const std::pair<std::string, std::string> tele{kFileName, NameText("com.zelvan.dcal.wt.bin")};
    const std::pair<std::string, std::string> ultra{kFileName, NameText("com.zelvan.dcal.wu.bin")};
    const std::pair<std::string, std::string> values{kDriverValues, "int32 [4096, 3072, 10, 20]"};
    const Faults refused{.metadataUpdate = {{0x91010022, -5}, {0x91010023, -6}, {0x91010024, -7}}};
    const std::string update = lead + "ZV IMetadata::update(), tag:-186220540";
    const Lines updates{update + "6 err:-5", update + "5 err:-6", update + "4 err:-7"};
    const std::string noPair = lead + "Cannot find zelvan calibration data!";
    const std::string noList = lead + "Cannot get logical device list";
    const std::string noSensors = lead + "Cannot get sensor device list";
    const std::string notTwo = lead + "The logical device don't have 2 sensors";
    const std::string noDriver = lead + "get sensor drv error : 5!";
    const struct {
        PhoneBuilder phone;
        int device, result;
        Tags tags;
        Lines errors;
    } kCases[] = {
        // A member is a device index where one matches (2 is sensor 1), and a sensor index otherwise.
        {Phone({2, 7}), 5, 0, {type, tele, {kDriverValues, "int32 [65535, 40000, 4096, 3072]"}}, {}},
        {Phone({0, 3}), 6, 0, {type, ultra, values}, {}},
        {Phone({2, 0, 3}), 5, -1, {type, tele}, {notTwo}},
        {Phone({2}), 6, -1, {type, ultra}, {notTwo}},
        {Phone({0, 9}), 5, -1, {type, tele}, {noDriver}},
        {Phone({2, 0}, {.sensorDrivers = {1}}), 5, -1, {type, tele}, {noDriver}},
        {Phone({0, 3}), 8, 0, {type, values}, {noPair}},
        {Phone({0, 3}, refused), 5, 0, {}, updates},
        {Phone({0, 3}), 4, -1, {}, {}},
        {Phone({0, 3}), 9, -1, {}, {lead + "find DeviceId2RoleId[9] error!"}},
        {Phone({0, 3}, {.logicalDeviceList = true}), 5, -1, {}, {noList}},
        {Phone({0, 3}, {.sensorList = true}), 5, -1, {}, {noSensors}},
    };
    for (const auto& [fitted, device, result, tags, errors] : kCases) {
        const TestPhone phone(fitted);
        TestPlugin plugin;
        // A device whose chips are no pair of this phone.
        plugin.DeviceId2RoleId[8] = {.roleId = 81, .sensorNames = "imx596;ov50d", .drvName = "A_B_C"};
        IMetadata meta;
        SCOPED_TRACE(std::to_string(device) + " " + testing::PrintToString(errors));
        EXPECT_EQ(plugin.MetadataUpdateCalibrationToolTag(meta, device), result);
        EXPECT_EQ(DescribeAll(meta), tags);
        EXPECT_EQ(phone.errors(), errors);
        EXPECT_EQ(phone.log().back() == "I " + lead + "exit", result == 0);
    }
}

TEST(CalibrationToolTag, WritesOnlyWhatIsMissing) {
    const TestPhone phone(Phone({2, 0}));
    TestPlugin plugin;
    IMetadata meta;
    meta.update(0x91010022, MakeEntry<unsigned char>(0x91010022, {7}));
    EXPECT_EQ(plugin.MetadataUpdateCalibrationToolTag(meta, 5), 0);
    const Tags first = DescribeAll(meta);
    EXPECT_EQ(first.at(kType), "byte [7]");
    EXPECT_EQ(first.size(), 3U);
    // Device 6 would have other values; nothing is written any more.
    EXPECT_EQ(plugin.MetadataUpdateCalibrationToolTag(meta, 6), 0);
    EXPECT_EQ(DescribeAll(meta), first);
}

}  // namespace
