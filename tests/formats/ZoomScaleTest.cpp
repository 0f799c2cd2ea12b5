#include <sstream>

#include "formats/ZoomScale.h"
#include "tests/formats/ZoomScaleText.h"

namespace {

std::string ScaleText(float length, const std::string& ratios, int type) {
    std::istringstream stream(ratios);
    const formats::ZoomScaleRecord record = formats::MakeZoomScaleRecord(length, stream, type);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&record);
    return ZoomScaleText({bytes, sizeof(record)});
}

TEST(ZoomScale, PositionsByTheLogarithmOfTheRatio) {
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

}  // namespace
