#include <cmath>
#include <sstream>

#include <gtest/gtest.h>

#include "formats/FakeSatSize.h"
#include "formats/Hex.h"
#include "formats/SatPayload.h"
#include "formats/ZoomScale.h"

namespace formats {

namespace {

template <typename Record>
std::vector<std::uint8_t> BytesOf(const std::vector<Record>& records) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(records.data());
    return {bytes, bytes + records.size() * sizeof(Record)};
}

TEST(MemoryTags, ZoomScaleRecordsReadBack) {
    std::istringstream photo("0.5:1:2");
    std::istringstream video("1:4");
    auto blob =
        BytesOf<ZoomScaleRecord>({MakeZoomScaleRecord(800, photo, 1), MakeZoomScaleRecord(700, video, 2)});
    EXPECT_EQ(UpperHex(std::span(blob).first(12)), "01030A010000003F0000803F");
    blob.resize(blob.size() + 83);  // no third record
    std::string text;
    for (const ZoomScaleRecord& record : ParseZoomScaleRecords(blob)) {
        text += std::to_string(record.type) + ":";
        for (std::size_t i = 0; i < record.count; ++i) {
            text += " " + std::to_string(std::lround(10 * record.ratios[i])) + "@" +
                    std::to_string(std::lround(record.positions[i]));
        }
        text += ";";
    }
    EXPECT_EQ(text, "1: 5@0 10@400 20@800;2: 10@0 40@700;");
    EXPECT_TRUE(ParseZoomScaleRecords({}).empty());
}

TEST(MemoryTags, FakeSatSizesReadBack) {
    auto blob = BytesOf<FakeSatSize>(
        {{.zoomStart = 2.0F, .zoomStop = 10.0F, .type = 1, .width = 4000, .height = 3000},
         {.zoomStart = 0.5F, .zoomStop = 1.0F, .type = 3, .width = 16, .height = 9}});
    EXPECT_EQ(UpperHex(std::span(blob).first(24)), "000000400000204101000000A00F0000B80B000000000000");
    blob.push_back(9);
    const std::vector<FakeSatSize> sizes = ParseFakeSatSizes(blob);
    ASSERT_EQ(sizes.size(), 2U);
    EXPECT_EQ(BytesOf(sizes), std::vector(blob.begin(), blob.end() - 1));
    EXPECT_EQ(sizes[1].width, 16);
}

TEST(MemoryTags, SatPayloadHeaderReadsBack) {
    DualCameraCalDataInfo pair = tables::kDualCameraPairs[1];
    pair.masterCameraRole = 3;
    const SatPayloadHeader made = MakeSatPayloadHeader(pair);
    auto payload = BytesOf<SatPayloadHeader>({made});
    EXPECT_EQ(UpperHex(payload), "1400030000100000");
    payload.push_back(0xEE);
    const auto header = ParseSatPayloadHeader(payload);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->masterRole(), 3);
    EXPECT_EQ(header->slaveRole(), 20);
    EXPECT_EQ(header->length, 4096U);
    EXPECT_FALSE(ParseSatPayloadHeader(std::span(payload).first(7)));
}

TEST(Hex, ReadsBackAndRefuses) {
    EXPECT_EQ(UpperHex(ParseHex(" 00 ffA5\t0b\n").value()), "00FFA50B");
    EXPECT_EQ(ParseHex("")->size(), 0U);
    for (const char* text : {"0", "00 1", "0 0", "0x00", "0g", "-1", "00,11"}) {
        EXPECT_FALSE(ParseHex(text)) << text;
    }
}

}  // namespace

}  // namespace formats
