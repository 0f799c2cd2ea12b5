#include <sstream>

#include <gmock/gmock.h>

#include "analysis/MemoryMap.h"
#include "tests/analysis/Boots.h"

namespace {

using analysis::MarkedRange;

/// A line a range: "0x0010..0x001B fuse id = 0102".
std::string Text(const std::vector<MarkedRange>& ranges) {
    std::ostringstream text;
    text << std::hex << std::uppercase;
    for (const MarkedRange& range : ranges) {
        constexpr std::array<const char*, 4> kStates = {"", " good", " empty", " bad"};
        text << range.first << ".." << range.last << ' ' << range.name
             << (range.value.empty() ? "" : " = " + range.value)
             << kStates[static_cast<std::size_t>(range.state)] << '\n';
    }
    return text.str();
}

TEST(MemoryMap, NamesEveryByteThatThePlugInReads) {
    std::vector<std::uint8_t> image = SamplePhone("halcyrion").sensors[0].eeprom->image;
    image[0x800] ^= 1;
    std::fill(image.begin() + 40, image.begin() + 67, std::uint8_t{0});
    image[67] = 1;
    EXPECT_EQ(Text(analysis::MarkedRangesOf(image, &tables::kEepromLayouts[0], 0)), R"(1..1 maker = 0x03 semco
8..B header id = 0x043D8EC2, halcyrion_semco_wide_imx707_eeprom
8..8 lens id = 0xC2
C..C sensor id = 0x07
10..1B fuse id = 0102030405060708090A0B0C
28..42 AF empty
43..43 AF checksum = 0x01 stored, 0x01 computed empty
751..763 AWB good
764..764 AWB checksum = 0x19 stored, 0x19 computed good
788..ED7 LSC bad
ED8..ED8 LSC checksum = 0xBA stored, 0xBB computed bad
1AE8..20CA PDAF good
20CB..20CB PDAF checksum = 0x9E stored, 0x9E computed good
20EF..2138 OIS good
20F2..20F3 gain X = 8500
20F4..20F4 third parameter = 5
210D..210D sensitivity X = 344
2112..2113 gain Y = 8344
2114..2114 fourth parameter = 6
212D..212D sensitivity Y = 348
2139..2139 OIS checksum = 0x76 stored, 0x76 computed good
3FE2..3FE2 QR code flag = 0x01, there is a code
3FE3..3FF0 QR code = WIDE0012345678
)");
}

TEST(MemoryMap, CalibrationBlocksAreCheckedFromTheStartOfTheImage) {
    std::vector<std::uint8_t> image(tables::kEepromImageSize, 0);
    image[1] = 0x44;
    image[101] = formats::EepromCheckSum(image, 20, 100);
    const DualCameraCalDataInfo carried = {.masterCameraRole = 0,
                                           .slaveCameraRole = 21,
                                           .dataCamera = 21,
                                           .eepromOffset = 20,
                                           .length = 100,
                                           .dumpPath = "",
                                           .goldenPath = ""};
    DualCameraCalDataInfo ofAnother = carried;
    ofAnother.dataCamera = 0;
    DualCameraCalDataInfo outside = carried;
    outside.eepromOffset = tables::kEepromImageSize - 50;
    EXPECT_EQ(Text(analysis::MarkedRangesOf(image, nullptr, 21, std::array{carried, ofAnother, outside})),
              R"(1..1 maker = 0x44 unknown
8..B header id = 0x00000000, of no layout
8..8 lens id = 0x00
C..C sensor id = 0x00
10..1F fuse id = 00000000000000000000000000000000
14..77 wide and ultra calibration block good
65..65 wide and ultra calibration block checksum = 0x01 stored, 0x01 computed good
)");
}

}  // namespace
