#include <string>

#include <gtest/gtest.h>

#include "tables/SizeCatalogue.h"

namespace tables {

namespace {

std::string SizeText(const SizeCatalogueEntry& row) {
    return std::to_string(row.width) + "x" + std::to_string(row.height);
}

/// Sizes, and with `durations` the least ones of JPEG and YUV in whole milliseconds.
template <typename Catalogue>
std::string Text(const Catalogue& catalogue, bool durations) {
    std::string text;
    for (const SizeCatalogueEntry& row : catalogue) {
        EXPECT_EQ(row.jpegStallDuration, 33333333);
        text += (text.empty() ? "" : ", ") + SizeText(row);
        text += !durations ? ""
                           : " " + std::to_string(row.jpegMinFrameDuration / 1'000'000) + "/" +
                                 std::to_string(row.yuvMinFrameDuration / 1'000'000);
    }
    return text;
}

TEST(SizeCatalogue, MergedLists) {
    EXPECT_EQ(Text(size_catalogue::kWithDurations, true),
              "4096x3072 50/50, 4000x3000 50/50, 4096x2304 33/33, 3072x3072 50/50, 4096x2304 50/33, "
              "3072x3072 50/33, 3000x3000 50/50, 3968x2232 50/50, 3424x2568 33/33, 3840x2160 33/33, "
              "4000x1800 50/50, 3328x1872 33/33, 2880x2160 33/33, 2448x2448 33/33, 2592x1944 50/50, "
              "2560x1920 33/33, 3200x1440 33/33, 2816x1584 33/33, 1952x1952 50/50, 2880x1296 33/33, "
              "2560x1440 33/33, 2560x1152 33/33, 1920x1440 33/33, 2400x1080 33/33, 2340x1080 33/33, "
              "1920x1152 33/33, 1920x1088 33/33, 1920x1080 33/16, 1600x1200 33/33, 1440x1088 33/33, "
              "1440x1080 33/16, 1280x960 33/33, 1080x1080 33/33, 1600x720 33/33, 1440x720 33/33, "
              "1280x720 33/16, 1280x576 33/33, 960x720 33/33, 720x480 33/33, 640x480 33/16, 640x360 33/33, "
              "352x288 33/33, 320x240 33/33, 192x144 33/33, 176x144 33/33, 192x108 33/33, 160x96 33/33");
    // The vendor's list has the same sizes but one.
    std::string vendor = Text(size_catalogue::kWithDurations, false);
    vendor.replace(vendor.find("1952x1952"), 9, "1944x1944");
    EXPECT_EQ(Text(size_catalogue::kVendor, false), vendor);
}

TEST(SizeCatalogue, DurationsDerivedFromTheArea) {
    const struct {
        SizeCatalogueEntry row;
        std::int64_t jpeg, yuv;
    } kCases[] = {
        {{3840, 2159}, 33333333, 33333333},
        {{3840, 2160}, 50000000, 33333333},
        {{3841, 2160}, 50000000, 50000000},
        {{3841, 2160, 16666666, 0}, 16666666, 50000000},
        {{3841, 2160, 0, 16666666}, 50000000, 16666666},
    };
    for (const auto& [row, jpeg, yuv] : kCases) {
        EXPECT_EQ(JpegMinFrameDuration(row), jpeg) << SizeText(row);
        EXPECT_EQ(YuvMinFrameDuration(row), yuv) << SizeText(row);
    }
}

TEST(SizeCatalogue, WhatASensorTakes) {
    const struct {
        SizeCatalogueEntry row;
        std::int64_t maxWidth, maxHeight;
        bool allow8k, jpeg, yuv;
    } kCases[] = {
        {{640, 480}, 640, 480, false, true, true},      {{640, 480}, 639, 480, true, false, false},
        {{640, 480}, 640, 479, true, false, false},     {{7680, 4320}, 4000, 3000, false, false, true},
        {{7680, 4320}, 4000, 3000, true, true, true},   {{7680, 4320}, 8192, 6144, false, true, true},
        {{7680, 4319}, 4000, 3000, true, false, false}, {{4320, 7680}, 4000, 3000, true, false, false},
    };
    for (const auto& [row, maxWidth, maxHeight, allow8k, jpeg, yuv] : kCases) {
        SCOPED_TRACE(SizeText(row) + " on " + SizeText({maxWidth, maxHeight}));
        EXPECT_EQ(TakesJpeg(row, maxWidth, maxHeight, allow8k), jpeg);
        EXPECT_EQ(TakesYuv(row, maxWidth, maxHeight), yuv);
    }
}

}  // namespace

}  // namespace tables
