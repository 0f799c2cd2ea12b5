#include "tests/metadata/MetadataTest.h"
#include "tests/metadata/StreamLists.h"
#include "tests/support/Describe.h"

namespace {

using testing::ElementsAre;

constexpr std::uint32_t kVendorList = ZELVAN_SCALER_STREAM_CONFIGURATIONS;

/// The instance of the phones below: its lowest sensor has index 1.
constexpr int kInstance = 2;

PhoneBuilder ScalerPhone(const FittedSensor& sensor, const Faults& faults = {}) {
    return PhoneOf({{31}, sensor, {30}}).devices({{}, {}, {.sensorBits = 6}, {}}).faults(faults);
}

/// Whether the list of sizes was last asked to take 8K. None of its sizes depends on that at present, so that
/// the call itself is listened to.
bool tookEightK = false;

}  // namespace

// The linker binds the plug-in's calls of updateStreamConfigurationWithDuration to the second of these.
#define WITH_DURATION \
    "_ZN24CameraPlatformInfoZelvan37updateStreamConfigurationWithDurationERN5NSCam9IMetadataEiii"
void WithDuration(CameraPlatformInfoZelvan*, IMetadata&, int, int, int) __asm__("__real_" WITH_DURATION);
void Listen(CameraPlatformInfoZelvan*, IMetadata&, int, int, int) __asm__("__wrap_" WITH_DURATION);
void Listen(CameraPlatformInfoZelvan* self, IMetadata& meta, int width, int height, int allow8k) {
    tookEightK = allow8k != 0;
    WithDuration(self, meta, width, height, allow8k);
}

namespace {

TEST(ZelvanScaler, WhatDependsOnTheDevice) {
    // `main` and `mode8K` are empty where there is no super resolution and no 8K mode.
    const auto expect = [](const FittedSensor& sensor, const std::string& role, const std::string& binning,
                           const std::string& maxJpegSize, const std::string& main,
                           const std::string& mode8K) {
        SCOPED_TRACE(role);
        Updating device(ScalerPhone(sensor));
        EXPECT_EQ(device.plugin.MetadataUpdateScaler(device.meta, kInstance), 0);
        const std::string full = *sensor.deviceId == 7 ? "34 4096 3072 1" : "34 0 0 1";
        EXPECT_EQ(Tuples(device.meta.entryFor(kVendorList))[0], full);
        EXPECT_EQ(Tuples(device.meta.entryFor(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS))[0], full);
        Tags tags = device.tags();
        for (const char* const list : {"0xD000A", "0xD000B", "0xD000C", "0xD001A", "0x9101001D"}) {
            EXPECT_EQ(tags.erase(list), 1U) << list;
        }
        Tags expected = {{"0x9101004C", "int32 [" + binning + "]"},
                         {"0x70008", "int32 [" + maxJpegSize + "]"},
                         {"0x91010001", "int32 [1]"}};
        if (!main.empty()) {
            expected["0x9101001E"] =
                "int32 [35, 8192, 6144, 0, 33, 8192, 6144, 0, 34, 8192, 6144, 0, 32, 4000, 3000, 0, "
                "35, 1440, 1080, 0, 33, 1440, 1080, 0, 34, 1440, 1080, 0]";
            expected["0x9101001C"] = "byte [" + main + "]";
        }
        EXPECT_EQ(tags, expected);
        EXPECT_EQ(tookEightK, !mode8K.empty());
        Lines lines = {"I enter",
                       "I deviceID = 0x" + std::to_string(*sensor.deviceId) + ", instanceId = 0x2, ",
                       "I MetadataUpdateScaler roleId = " + role, "I exit"};
        if (!mode8K.empty()) {
            lines.insert(lines.end() - 1, "I find 8K sensormode : " + mode8K);
        }
        EXPECT_EQ(device.phone.logOf("MetadataUpdateScaler"), lines);
    };
    using Size = std::array<int, 2>;
    const auto fitted = [](int deviceId, Size pixelArray, Size captureSize,
                           const std::map<std::size_t, Size>& modes) {
        return FittedSensor{
            .deviceId = deviceId, .pixelArray = pixelArray, .captureSize = captureSize, .modes = modes};
    };
    expect(fitted(7, {8192, 6144}, {4096, 3072},
                  {{0, {4096, 3072}}, {8, {8192, 6144}}, {18, {7680, 4319}}, {19, {7680, 4320}}}),
           "0", "4", "18874368", "1", "19");
    // The first 8K mode counts. Without a capture size nothing is divided by it.
    expect(fitted(3, {4208, 3120}, {0, 0}, {{5, {7680, 4320}}, {8, {4208, 0}}, {19, {7680, 4320}}}), "21",
           "0", "0", "", "5");
    // The array's area is no signed number, the JPEG size is one that wrapped.
    expect(fitted(1, {65535, 65535}, {65535, 65535}, {{8, {0, 2464}}}), "1", "1", "-196606", "", "");
    expect(fitted(2, {4000, 3000}, {4000, 3001}, {}), "20", "0", "18006000", "0", "");
}

Lines VendorTuples(Updating& device, int roleId, int width, int height) {
    device.plugin.updateStreamConfigurationZelvan(device.meta, roleId, width, height, 0);
    return Tuples(device.meta.entryFor(kVendorList));
}

TEST(ZelvanScaler, VendorListInFull) {
    Updating device;
    EXPECT_THAT(
        VendorTuples(device, 0, 176, 144),
        ElementsAre("34 176 144 1", "35 176 144 1", "32 176 144 0", "37 176 144 0", "842094169 2560 1920 0",
                    "842094169 3840 2160 0", "842094169 3280 2464 0", "33 176 144 0", "540422489 176 144 0",
                    "33 160 96 0", "540422489 160 96 0", "35 176 144 0", "35 160 96 0", "34 176 144 0",
                    "34 160 96 0", "842094169 176 144 0", "842094169 160 96 0"));
    EXPECT_THAT(
        device.phone.logOf("updateStreamConfigurationZelvan"),
        ElementsAre("D ZV IMetadata::update(), Y16: format = 540422489, size = 176x144, direction = 0",
                    "D ZV IMetadata::update(), Y16: format = 540422489, size = 160x96, direction = 0"));
    EXPECT_THAT(Describe(device.meta.entryFor(kVendorList)), testing::StartsWith("int32 ["));
    // Front cameras' own JPEG sizes are copied like all JPEG outputs.
    for (const int front : {1, 40}) {
        const Lines tuples = VendorTuples(device, front, 160, 96);
        EXPECT_THAT(Lines(tuples.begin() + 7, tuples.begin() + 12),
                    ElementsAre("33 5184 3888 0", "33 5120 2880 0", "33 5120 2304 0", "33 3888 3888 0",
                                "33 160 96 0"));
        EXPECT_THAT(Runs(Lines(tuples.begin() + 12, tuples.end())),
                    ElementsAre("540422489 160 96 0", "35 5184 3888 0 .. 160 96 0 (5)",
                                "34 5184 3888 0 .. 160 96 0 (5)", "842094169 5184 3888 0 .. 160 96 0 (5)"));
    }
}

TEST(ZelvanScaler, VendorListOfLargeSensors) {
    Updating device;
    const struct {
        int width, height;
        std::string yv12;  ///< outputs before the sizes of the catalogue
        std::string sizes;
    } kCases[] = {
        {4000, 3000, "3840 2160 0 .. 3280 2464 0 (2)", "4000 3000 0 .. 160 96 0 (42)"},
        {2560, 1919, "3840 2160 0 .. 3280 2464 0 (2)", "2560 1440 0 .. 160 96 0 (27)"},
        {2559, 1920, "3840 2160 0 .. 3280 2464 0 (2)", "1920 1440 0 .. 160 96 0 (25)"},
        {2559, 1919, "2560 1920 0 .. 3280 2464 0 (3)", "1920 1440 0 .. 160 96 0 (25)"},
    };
    for (const auto& [width, height, yv12, sizes] : kCases) {
        const std::string full = std::to_string(width) + " " + std::to_string(height);
        Lines others;
        Lines y16;
        for (const std::string& tuple : VendorTuples(device, 0, width, height)) {
            (tuple.starts_with("540422489 ") ? y16 : others).push_back(tuple);
        }
        EXPECT_THAT(Runs(y16), ElementsAre("540422489 " + sizes));
        EXPECT_THAT(Runs(others), ElementsAre("34 " + full + " 1", "35 " + full + " 1", "32 " + full + " 0",
                                              "37 " + full + " 0", "842094169 " + yv12, "33 " + sizes,
                                              "35 " + sizes, "34 " + sizes, "842094169 " + sizes));
    }
}

TEST(ZelvanScaler, RefusedUpdatesStopNothing) {
    const std::string text = "] ZV IMetadata::update(), tag";
    const Refusals refusals = {
        {"[updateBinningFactorConfiguration" + text, ZELVAN_SCALER_BINNING_FACTOR},
        {"[updateStreamConfigurationWithDuration" + text, SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS},
        {"[updateSuperResolutionStreamConfiguration" + text,
         ZELVAN_SCALER_SUPER_RESOLUTION_STREAM_CONFIGURATIONS},
        {"[updateSuperResolutionStreamConfiguration" + text, ZELVAN_SCALER_SUPER_RESOLUTION_MAIN},
        {"[updateMaxJpegSizeConfiguration" + text, ANDROID_JPEG_MAX_SIZE},
        {"[updateStreamConfigurationZelvan" + text, kVendorList},
        {"[MetadataUpdateScaler" + text, ZELVAN_SCALER_CONFIGURED},
        {"(silent)", ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS},
    };
    Updating device(
        ScalerPhone({.deviceId = 7, .modes = {{0, {4000, 3000}}, {8, {8192, 6144}}}}, FaultsOf(refusals)));
    EXPECT_EQ(device.plugin.MetadataUpdateScaler(device.meta, kInstance), 0);
    Lines lines = RefusalLines(refusals);
    lines.pop_back();
    EXPECT_EQ(device.phone.errors(), lines);
    EXPECT_EQ(device.phone.log().back(), "I [MetadataUpdateScaler] exit");
    EXPECT_EQ(device.tags(), (Tags{{"0xD000A", "int32 [34, 1920, 1080, 1]"}, {"0xD000C", "none"}}));
}

TEST(ZelvanScaler, EarlyFailuresWriteNothing) {
    const auto fail = [](int deviceId, int instanceId, const Faults& faults, const std::string& error) {
        SCOPED_TRACE(error);
        Updating device(ScalerPhone({.deviceId = deviceId, .modes = {{0, {4000, 3000}}}}, faults));
        EXPECT_EQ(device.plugin.MetadataUpdateScaler(device.meta, instanceId), -1);
        EXPECT_EQ(device.tags(), Tags());
        EXPECT_EQ(device.phone.errors(), Lines{"[MetadataUpdateScaler] " + error});
    };
    fail(7, 2, {.moduleFactory = true}, "Cannot get logical device list");
    fail(7, 2, {.logicalDeviceList = true, .sensorList = true}, "Cannot get logical device list");
    fail(7, 2, {.sensorList = true}, "Cannot get sensor device list");
    fail(7, 2, {.sensorDrivers = {1}, .staticInfo = {7}}, "get sensor static info error : 7!");
    fail(7, 3, {}, "get sensor static info error : -1!");  // no sensor bit
    fail(29, 2, {.sensorDrivers = {1}}, "get sensor drv error : 2!");
    fail(29, 2, {}, "find DeviceId2RoleId[29] error!");
}

}  // namespace
