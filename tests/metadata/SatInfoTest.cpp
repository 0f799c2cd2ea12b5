#include "tests/formats/ZoomScaleText.h"
#include "tests/metadata/MetadataTest.h"

namespace {

TEST(SatInfo, PerRole) {
    const TestPhone phone;
    TestPlugin plugin;
    IMetadata sat;
    EXPECT_EQ(plugin.MetedataUpdateSatInfo(sat, 4), 0);
    EXPECT_EQ(DescribeAll(sat), (Tags{{"0x9101008E", "memory [168 bytes]"}}));
    const auto records = BlobOf(sat.entryFor(ZELVAN_CAMERA_SAT_ZOOM_INFO));
    EXPECT_EQ(
        ZoomScaleText(records, 0),
        "01060A01: 0.600 1.000 2.000 5.000 10.000 20.000: 0.000 116.542 274.679 483.725 641.863 800.000");
    EXPECT_EQ(
        ZoomScaleText(records, 84),
        "02060A01: 0.600 1.000 2.000 5.000 10.000 15.000: 0.000 111.088 261.825 461.088 611.825 700.000");

    // A device of the second SAT role; its flags grow with every call.
    plugin.DeviceId2RoleId[8].roleId = 80;
    IMetadata second;
    plugin.MetedataUpdateSatInfo(second, 8);
    EXPECT_EQ(plugin.MetedataUpdateSatInfo(second, 8), 0);
    EXPECT_EQ(DescribeAll(second),
              (Tags{{"0x9101008E", "memory [84 bytes]"}, {"0x9101009C", "int32 [1, 1]"}}));
    EXPECT_EQ(ZoomScaleText(BlobOf(second.entryFor(ZELVAN_CAMERA_SAT_ZOOM_INFO)), 0),
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
