#include <sstream>

#include <gmock/gmock.h>

#include "analysis/DeviceGroups.h"
#include "analysis/Timeline.h"
#include "tables/PublishedProperties.h"
#include "tests/analysis/Boots.h"

namespace {

using analysis::CourseOf;
using analysis::Timeline;
using analysis::TimelineOf;

record::LogLine Line(const std::string& text, int priority = 4) {
    return {.priority = priority, .tag = "plug-in", .message = "(1)" + text};
}

/// "SetFuseIdProp 2..5" a step that left a trace.
std::string Steps(const Timeline& timeline) {
    std::ostringstream text;
    for (const analysis::TimelineStep& step : timeline.steps) {
        if (step.run) {
            text << step.name << ' ' << step.run->first << ".." << step.run->end << '\n';
        }
    }
    return text.str();
}

TEST(Timeline, GivesTheWalkItsDevicesUpToTheEventThatEndedTheBoot) {
    record::BootRecord boot;
    boot.events = {
        Line("[SetModuleInfoProp] enter"),
        record::PropertySet{.name = tables::kModuleInfoProperty, .value = "", .stored = false},
        Line("[MetadataUpdate] enter"),
        record::Asked{.query = record::Query::DeviceCount, .about = 0, .answer = {2}, .text = {}},
        Line("[MetadataUpdate] instanceId = 0"),
        record::TagStored{.tag = ZELVAN_CAMERA_ROLEID, .result = 0, .count = 1},
        record::ProviderMerge{.provider = 0, .metadata = {}},
        Line("[MetadataUpdate] instanceId = 1"),
        Line("[MetadataUpdateScaler] get sensor static info error : 1!", 6),
    };
    const Timeline timeline = TimelineOf(boot, CourseOf(boot)).value();
    EXPECT_EQ(timeline.events, 9U);
    EXPECT_EQ(timeline.steps.size(), 9U);
    EXPECT_EQ(Steps(timeline), "SetModuleInfoProp 0..2\nMetadataUpdate 2..9\n");
    const analysis::EventRun& walk = *timeline.steps[7].run;
    EXPECT_THAT((std::array{walk.questions, walk.lines, walk.properties, walk.tags}),
                testing::ElementsAre(1, 4, 0, 1));
    EXPECT_THAT(walk.errors, testing::ElementsAre(8));
    ASSERT_EQ(timeline.devices.size(), 2U);
    EXPECT_EQ(timeline.devices[0].events(), 3U);
    EXPECT_EQ(timeline.devices[1].end, 9U);

    boot.ordered = false;
    EXPECT_FALSE(TimelineOf(boot, CourseOf(boot)));
}

TEST(Timeline, OfAWholeBootHasEveryStepInItsOrder) {
    const analysis::Boot boot = BootOf(SamplePhone("halcyrion"));
    const Timeline timeline = TimelineOf(boot.record, CourseOf(boot.record)).value();
    std::size_t end = 0;
    for (const analysis::TimelineStep& step : timeline.steps) {
        ASSERT_TRUE(step.run) << step.name;
        EXPECT_GE(step.run->first, end) << step.name;
        end = step.run->end;
    }
    EXPECT_EQ(end, timeline.events);
    EXPECT_EQ(timeline.devices.size(), 17U);
}

TEST(DeviceGroups, SayWhatDevicesHaveAlikeOnce) {
    const record::Tag one = {.tag = 7, .values = record::TagValues(std::vector<std::int32_t>{1})};
    const record::Tag two = {.tag = 7, .values = record::TagValues(std::vector<std::int32_t>{2})};
    const record::Tag wide = {.tag = 7, .values = record::TagValues(std::vector<std::int64_t>{1})};
    const record::Tag streams = {.tag = ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS,
                                 .values = record::TagValues(std::vector<std::int32_t>{33, 640, 480, 0})};
    record::BootRecord boot;
    for (const record::TagSet& set : {record::TagSet{one, streams}, {two}, {one}, {wide, streams}}) {
        boot.events.emplace_back(record::ProviderMerge{.provider = 0, .metadata = set});
    }
    const auto tags = analysis::SharedTagsOf(boot);
    ASSERT_EQ(tags.size(), 4U);
    EXPECT_EQ(*tags[0].tag, one);
    EXPECT_THAT(tags[0].merges, testing::ElementsAre(0, 2));
    EXPECT_EQ(*tags[2].tag, wide);
    EXPECT_THAT(tags[3].merges, testing::ElementsAre(0, 3));
    const auto lists = analysis::SharedStreamsOf(boot);
    ASSERT_EQ(lists.size(), 1U);
    EXPECT_EQ(lists[0].streams[0].row.width, 640);
    EXPECT_THAT(lists[0].merges, testing::ElementsAre(0, 3));
}

}  // namespace
