#include <vector>

#include <gmock/gmock.h>

#include "analysis/TagContents.h"
#include "tables/PublishedTags.h"
#include "tables/StreamFormats.h"

namespace {

using record::Blob;
using record::TagValues;

record::Tag Memory(std::uint32_t tag, std::vector<Blob> blobs) {
    return {.tag = tag, .values = TagValues(std::move(blobs))};
}

TEST(TagContents, DamagedTagsAreNotDecoded) {
    EXPECT_FALSE(analysis::SatPayloadOf(Memory(ZELVAN_SAT_CALIBRATION_DATA, {Blob(7)})));
    EXPECT_FALSE(analysis::SatPayloadOf(Memory(ZELVAN_SAT_CALIBRATION_DATA, {Blob(8), Blob(8)})));
    EXPECT_FALSE(analysis::SatPayloadOf(Memory(ZELVAN_BOKEH_CALIBRATION_DATA, {Blob(8)})));
    EXPECT_TRUE(analysis::ZoomScalesOf(Memory(ZELVAN_CAMERA_SAT_ZOOM_INFO, {Blob(85)})).empty());
    EXPECT_EQ(analysis::ZoomScalesOf(Memory(ZELVAN_CAMERA_SAT_ZOOM_INFO, {Blob(168)})).size(), 2U);
    EXPECT_TRUE(analysis::FakeSatSizesOf(Memory(ZELVAN_CAMERA_FAKESAT_FAKESATSIZE, {Blob()})).empty());
    const auto streams = [](std::vector<std::int32_t> numbers) {
        return analysis::StreamRowsOf(
            {.tag = ZELVAN_SCALER_STREAM_CONFIGURATIONS, .values = TagValues(numbers)});
    };
    EXPECT_FALSE(streams({32, 1, 2}));
    EXPECT_EQ(streams({32, 1, 2, 0}).value().size(), 1U);
    const auto payload = analysis::SatPayloadOf(
        Memory(ZELVAN_SAT_CALIBRATION_DATA, {{0x15, 0, 0x02, 0x01, 0, 0x10, 0, 0, 9}}));
    ASSERT_TRUE(payload);
    EXPECT_EQ(payload->header.masterRole(), 0x102);
    EXPECT_EQ(payload->header.slaveRole(), 0x15);
    EXPECT_EQ(payload->header.length, 4096U);
    EXPECT_EQ(payload->block.size(), 1U);
}

TEST(TagContents, NthConfigurationHasTheNthDurations) {
    const auto list = [](std::uint32_t tag, const auto& numbers) {
        return record::Tag{.tag = tag, .values = TagValues(numbers)};
    };
    const record::TagSet metadata = {
        list(ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS,
             std::vector<std::int32_t>{33, 8, 6, 1, 33, 8, 6, 0, 34, 8, 6, 0, 33, 8, 6, 0, 33, 8, 6, 0}),
        list(ANDROID_SCALER_AVAILABLE_MIN_FRAME_DURATIONS,
             std::vector<std::int64_t>{33, 8, 6, 10, 33, 8, 6, 20}),
        list(ANDROID_SCALER_AVAILABLE_STALL_DURATIONS,
             std::vector<std::int64_t>{33, 8, 6, 30, 34, 8, 6, 40})};
    std::vector<std::vector<std::int64_t>> rows;
    for (const analysis::OfferedStream& stream : analysis::OfferedStreamsOf(metadata)) {
        rows.push_back({stream.row.format, *stream.row.direction, stream.row.minDuration.value_or(-1),
                        stream.row.stall.value_or(-1), stream.again ? 1 : 0});
    }
    EXPECT_THAT(rows, testing::ElementsAre(std::vector<std::int64_t>{33, 1, -1, -1, 0},
                                           std::vector<std::int64_t>{33, 0, 10, 30, 0},
                                           std::vector<std::int64_t>{34, 0, -1, 40, 0},
                                           std::vector<std::int64_t>{33, 0, 20, -1, 1},
                                           std::vector<std::int64_t>{33, 0, -1, -1, 1}));
}

TEST(TagContents, FormatsAreNamedAsPeopleNameThem) {
    EXPECT_EQ(analysis::FormatNamed("yuv"), HAL_PIXEL_FORMAT_YCBCR_420_888);
    EXPECT_EQ(analysis::FormatNamed("0x21"), HAL_PIXEL_FORMAT_BLOB);
    EXPECT_EQ(analysis::FormatNamed("540422489"), HAL_PIXEL_FORMAT_Y16);
    EXPECT_EQ(analysis::FormatNamed("YUVV"), std::nullopt);
    EXPECT_EQ(analysis::FormatName(1), "1");
}

}  // namespace
