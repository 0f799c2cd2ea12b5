#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <sstream>

#include "formats/ZoomScale.h"
#include "tests/metadata/MetadataTest.h"
#include "tests/support/Describe.h"

namespace {

/// "type count capacity 1: ratios: positions" of the record at `offset`, without the zeros past the count.
std::string RecordText(const record::Blob& blob, std::size_t offset) {
    struct {
        std::array<std::uint8_t, 4> head;
        std::array<std::array<float, 10>, 2> lists;
    } record{};
    std::memcpy(&record, blob.data() + offset, std::min(sizeof(record), blob.size() - offset));
    std::string text = HexText(record.head);
    for (const std::array<float, 10>& list : record.lists) {
        text += ":";
        for (std::size_t i = 0; i < list.size(); ++i) {
            std::array<char, 32> digits{};
            std::snprintf(digits.data(), digits.size(), " %.3f", static_cast<double>(list[i]));
            text += i < record.head[1] || list[i] != 0 ? digits.data() : "";
        }
    }
    return text;
}

std::string ScaleText(float length, const std::string& ratios, int type) {
    std::istringstream stream(ratios);
    const formats::ZoomScaleRecord record = formats::MakeZoomScaleRecord(length, stream, type);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&record);
    return RecordText({bytes, bytes + sizeof(record)}, 0);
}

TEST(SatInfo, ZoomScaleRecords) {
    EXPECT_EQ(ScaleText(100, "1:10:100", 0x203), "03030A01: 1.000 10.000 100.000: 0.000 50.000 100.000");
    EXPECT_EQ(ScaleText(100, "", 1), "01000A01::");
    // Ten ratios fit.
    EXPECT_EQ(ScaleText(90, "1:2:4:8:16:32:64:128:256:512:1024:2048", 1),
              "010A0A01: 1.000 2.000 4.000 8.000 16.000 32.000 64.000 128.000 256.000 512.000: 0.000 10.000 "
              "20.000 30.000 40.000 50.000 60.000 70.000 80.000 90.000");
    // One ratio has no scale. The sign of its position is the processor's.
    const std::string single = ScaleText(100, "0.6", 1);
    EXPECT_TRUE(single == "01010A01: 0.600: nan" || single == "01010A01: 0.600: -nan") << single;
}

TEST(SatInfo, PerRole) {
    const TestPhone phone;
    TestPlugin plugin;
    IMetadata sat;
    EXPECT_EQ(plugin.MetedataUpdateSatInfo(sat, 4), 0);
    EXPECT_EQ(DescribeAll(sat), (Tags{{"0x9101008E", "memory [168 bytes]"}}));
    const auto records = BlobOf(sat.entryFor(ZELVAN_CAMERA_SAT_ZOOM_INFO));
    EXPECT_EQ(
        RecordText(records, 0),
        "01060A01: 0.600 1.000 2.000 5.000 10.000 20.000: 0.000 116.542 274.679 483.725 641.863 800.000");
    EXPECT_EQ(
        RecordText(records, 84),
        "02060A01: 0.600 1.000 2.000 5.000 10.000 15.000: 0.000 111.088 261.825 461.088 611.825 700.000");

    // A device of the second SAT role; its flags grow with every call.
    plugin.DeviceId2RoleId[8].roleId = 80;
    IMetadata second;
    plugin.MetedataUpdateSatInfo(second, 8);
    EXPECT_EQ(plugin.MetedataUpdateSatInfo(second, 8), 0);
    EXPECT_EQ(DescribeAll(second),
              (Tags{{"0x9101008E", "memory [84 bytes]"}, {"0x9101009C", "int32 [1, 1]"}}));
    EXPECT_EQ(RecordText(BlobOf(second.entryFor(ZELVAN_CAMERA_SAT_ZOOM_INFO)), 0),
              "01040A01: 0.600 0.800 1.000 2.000: 0.000 95.578 169.713 400.000");

    // An unknown device enters the table and gets nothing.
    IMetadata unknown;
    EXPECT_EQ(plugin.MetedataUpdateSatInfo(unknown, 9), 0);
    EXPECT_TRUE(DescribeAll(unknown).empty());
    ASSERT_TRUE(plugin.DeviceId2RoleId.contains(9));
    EXPECT_EQ(plugin.DeviceId2RoleId[9].roleId, 0);
    EXPECT_TRUE(phone.log().empty());
}

}  // namespace
