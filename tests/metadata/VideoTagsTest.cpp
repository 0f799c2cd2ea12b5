#include "tests/metadata/MetadataTest.h"

namespace {

constexpr const char* kStabilization = "0x91010017";
constexpr const char* kStabilizationSupported = "0x9101004A";
constexpr const char* kNight = "0x91010033";
constexpr const char* kTrackAF = "0x910000E5";
constexpr const char* kHdr = "0x91010003";

/// The results of the four updaters, in the order of the device walk.
std::vector<int> UpdateAll(Updating& device, int instanceId) {
    return {device.plugin.MetedataUpdateVideoStabilizationData(device.meta, instanceId),
            device.plugin.MetedataUpdateVNQualityData(device.meta, instanceId),
            device.plugin.MetadataUpdateHDHDR(device.meta, instanceId),
            device.plugin.MetedataUpdateVideoTrackAFQualityData(device.meta, instanceId)};
}

TEST(VideoTags, PerRole) {
    const struct {
        int roleId;
        bool full, night, trackAF;
    } kCases[] = {{0, true, true, true},    {1, true, false, false},   {3, false, false, true},
                  {20, true, false, false}, {21, true, false, false},  {22, false, false, false},
                  {40, true, false, false}, {41, false, false, false}, {60, false, false, false}};
    for (const auto& [roleId, full, night, trackAF] : kCases) {
        SCOPED_TRACE(roleId);
        Updating device;
        device.plugin.DeviceId2RoleId[9].roleId = roleId;
        EXPECT_EQ(UpdateAll(device, 9), (std::vector<int>{0, 0, 1, 0}));
        Tags tags = {{kStabilization, full ? "int32 [8, 30, 6, 60, 6, 30, 5, 30]" : "int32 [6, 30, 5, 30]"},
                     {kStabilizationSupported, "byte [1]"},
                     {kHdr, "int32 [1]"}};
        if (night) {
            tags[kNight] = "int32 [6, 24]";
        }
        if (trackAF) {
            tags[kTrackAF] = "int32 [8, 30, 6, 30, 5, 30]";
        }
        EXPECT_EQ(device.tags(), tags);
    }
}

TEST(VideoTags, FillOnlyGaps) {
    Updating device;
    for (const std::uint32_t tag : {0x91010017U, 0x9101004AU, 0x91010033U, 0x910000E5U, 0x91010003U}) {
        device.meta.update(tag, MakeEntry<std::int32_t>(tag, {9}));
    }
    EXPECT_EQ(UpdateAll(device, 7), (std::vector<int>{0, 0, 1, 0}));
    Tags tags = device.tags();
    EXPECT_EQ(tags.extract(kHdr).mapped(), "int32 [1]");
    EXPECT_THAT(tags, testing::Each(testing::Field(&Tags::value_type::second, "int32 [9]")));
    EXPECT_EQ(tags.size(), 4U);
}

TEST(VideoTags, RefusedUpdatesAndUnknownDevices) {
    const std::string text = "] ZV IMetadata::update(), tag";
    const std::string stabilization = "[MetedataUpdateVideoStabilizationData";
    const std::string night = "[MetedataUpdateVNQualityData";
    const std::string trackAF = "[MetedataUpdateVideoTrackAFQualityData";
    const Refusals refusals = {{stabilization + text, ZELVAN_VIDEO_STABILIZATION_DATA},
                               {stabilization + text, ZELVAN_VIDEO_STABILIZATION_SUPPORTED},
                               {night + text, ZELVAN_VN_QUALITY_DATA},
                               {"[MetadataUpdateHDHDR" + text, ZELVAN_HDHDR_SUPPORTED},
                               {trackAF + text, ZELVAN_VIDEO_TRACK_AF_QUALITY_DATA}};
    Updating device(PhoneBuilder().faults(FaultsOf(refusals)));
    EXPECT_EQ(UpdateAll(device, 7), (std::vector<int>{0, 0, 1, 0}));
    Lines errors = RefusalLines(refusals);
    EXPECT_EQ(device.phone.errors(), errors);

    EXPECT_EQ(UpdateAll(device, 8), (std::vector<int>{-1, -1, 1, -1}));
    const std::string miss = "] find DeviceId2RoleId[8] error!";
    errors.insert(errors.end(), {stabilization + miss, night + miss, errors[3], trackAF + miss});
    EXPECT_EQ(device.phone.errors(), errors);
}

}  // namespace
