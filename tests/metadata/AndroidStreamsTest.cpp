#include "tests/metadata/MetadataTest.h"
#include "tests/metadata/StreamLists.h"
#include "tests/support/Describe.h"

namespace {

using testing::ElementsAre;

constexpr std::uint32_t kSource = SCALER_STREAM_CONFIGURATIONS_WITH_DURATIONS;

TEST(AndroidStreams, ListWithDurations) {
    Updating device;
    // What the tag held before does not stay.
    device.meta.update(kSource, MakeEntry<std::int64_t>(kSource, {1, 2, 3, 0, 4, 5}));
    const struct {
        int width, height;
        std::string jpeg, yuv, count;
    } kCases[] = {
        {4000, 3000, "4000 3000 0 50000000", "4000 3000 0 50000000", " (42)"},
        // 3000x3000 is too high, 2448x2448 is not.
        {3264, 2448, "2880 2160 0 33333333", "2880 2160 0 33333333", " (35)"},
        {640, 480, "640 480 0 33333333", "640 480 0 16666666", " (8)"},
    };
    for (const auto& [width, height, jpeg, yuv, count] : kCases) {
        device.plugin.updateStreamConfigurationWithDuration(device.meta, width, height, 0);
        const std::string full = std::to_string(width) + " " + std::to_string(height);
        EXPECT_THAT(Runs(Tuples(device.meta.entryFor(kSource), 6)),
                    ElementsAre("34 " + full + " 1 50000000 33333333", "35 " + full + " 1 50000000 33333333",
                                "32 " + full + " 0 50000000 33333333",
                                "33 " + jpeg + " 33333333 .. 160 96 0 33333333 33333333" + count,
                                "35 " + yuv + " 0 .. 160 96 0 33333333 0" + count));
    }
}

TEST(AndroidStreams, AndroidListsFollowTheListWithDurations) {
    Updating device;
    device.plugin.updateStreamConfigurationWithDuration(device.meta, 4000, 3000, 0);
    device.plugin.updateStreamConfiguration(device.meta);
    const auto runs = [&device](std::uint32_t tag) { return Runs(Tuples(device.meta.entryFor(tag))); };
    EXPECT_THAT(runs(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS),
                ElementsAre("34 4000 3000 1", "35 4000 3000 1", "32 4000 3000 0",
                            "33 4000 3000 0 .. 160 96 0 (42)", "35 4000 3000 0 .. 160 96 0 (42)",
                            "34 1920 1080 1 .. 160 96 0 (43)", "842094169 4000 3000 0 .. 160 96 0 (42)"));
    EXPECT_THAT(runs(ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS),
                ElementsAre("32 4000 3000 50000000", "33 4000 3000 50000000 .. 160 96 33333333 (42)",
                            "35 4000 3000 50000000 .. 160 96 33333333 (42)",
                            "34 4000 3000 50000000 .. 160 96 33333333 (42)",
                            "842094169 4000 3000 50000000 .. 160 96 33333333 (42)"));
    EXPECT_THAT(runs(ANDROID_SCALER_AVAILABLE_STALL_DURATIONS),
                ElementsAre("32 4000 3000 33333333", "33 4000 3000 33333333 .. 160 96 33333333 (42)",
                            "35 4000 3000 0 .. 160 96 0 (42)", "34 4000 3000 0 .. 160 96 0 (42)",
                            "842094169 4000 3000 0 .. 160 96 0 (42)"));
    EXPECT_THAT(Describe(device.meta.entryFor(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS)),
                testing::StartsWith("int32 ["));
}

template <typename Item>
std::string Converted(const std::vector<Item>& items) {
    auto entry = MakeEntry<Item>(1, items);
    CameraPlatformInfoZelvan::converter<Item>::copy(35, 34, entry);
    return Describe(entry);
}

TEST(AndroidStreams, Converter) {
    EXPECT_EQ(Converted<int>({}), "none");
    EXPECT_EQ(Converted<int>({35, 8, 6, 1, 33, 8, 6, 0, 35, 4, 3, 0, 35, 2, 1, 2}),
              "int32 [35, 8, 6, 1, 33, 8, 6, 0, 35, 4, 3, 0, 35, 2, 1, 2, 34, 4, 3, 0, 34, 2, 1, 2]");
    EXPECT_EQ(Converted<long>({35, 8, 6, 1, 35, 4, 3, 5000000000}),
              "int64 [35, 8, 6, 1, 35, 4, 3, 5000000000, 34, 4, 3, 5000000000]");
    // With one item too many, the last of the first copy's items stands where the walk looks for a format.
    EXPECT_EQ(Converted<long>({35, 8, 6, 35, 35, 4, 3, 7, 9}),
              "int64 [35, 8, 6, 35, 35, 4, 3, 7, 9, 34, 8, 6, 35, 34, 4, 3, 7, 34, 34, 4, 3]");
}

}  // namespace
