#include <sstream>

#include <gmock/gmock.h>

#include "tables/PublishedTags.h"
#include "zvcam/views/StreamsView.h"

namespace zvcam {
namespace {

TEST(StreamsView, TheLargestSizeIsFoundAmongNumbersWhoseProductNoIntegerHolds) {
    constexpr std::int64_t kHuge = std::int64_t{1} << 62;
    const record::TagSet metadata = {{.tag = ANDROID_SCALER_AVAILABLE_STREAM_CONFIGURATIONS,
                                      .values = record::TagValues(std::vector<std::int64_t>{
                                          33, 640, 480, 0, 33, kHuge, 4, 0, 34, 8, 6, 0})}};
    analysis::Device device;
    device.logicalIndex = 3;
    device.metadata = &metadata;
    std::ostringstream out;
    PrintStreamOverview(out, {device}, std::nullopt);
    EXPECT_EQ(out.str(),
              "device    largest                BLOB  IMPLEMENTATION_DEFINED\n"
              "3         4611686018427387904x4  2     1\n");
}

}  // namespace
}  // namespace zvcam
