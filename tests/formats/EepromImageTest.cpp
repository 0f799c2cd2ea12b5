#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <random>

#include <gtest/gtest.h>

#include "formats/EepromImage.h"

namespace formats {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// An image of ones with the header id of a layout.
Bytes ImageOf(const EepromCheckSumDesc& layout) {
    Bytes image(tables::kEepromImageSize, 1);
    for (std::size_t i = 0; i < 4; ++i) {
        image[layout.headerIdOffset + i] = static_cast<std::uint8_t>(layout.expectHeaderId >> 8 * i);
    }
    return image;
}

/// The findings of a layout, such as "AF ok, AWB 07/14": stored and computed of a range that is not good.
std::string Text(const std::vector<CheckSumFinding>& findings) {
    std::string text;
    for (const CheckSumFinding& finding : findings) {
        char line[32];
        std::snprintf(line, sizeof(line), "%s %02X/%02X", finding.range.name, finding.stored,
                      finding.computed);
        text +=
            (text.empty() ? "" : ", ") + (finding.good() ? finding.range.name + std::string(" ok") : line);
    }
    return text;
}

TEST(EepromImage, FindingsOfEveryLayout) {
    // A range of n ones has checksum n % 255 + 1.
    const struct {
        const char* name;
        const char* unsealed;
        const char* sealed;
    } kCases[] = {
        {"halcyrion_semco_wide_imx707_eeprom", "AF 01/1C, AWB 01/14, LSC 01/58, PDAF 01/E9, OIS 01/4B",
         "AF ok, AWB ok, LSC ok, PDAF ok, OIS ok"},
        {"halcyrion_sunny_tele_ov50d_eeprom", "AF 01/1C, AWB 01/14, LSC 01/58, PDAF 01/E9",
         "AF ok, AWB ok, LSC ok, PDAF ok"},
        {"halcyrion_aac_front_imx596_eeprom", "AWB 01/14, LSC 01/58", "AWB ok, LSC ok"},
        {"halcyrion_ofilm_uw_ov13b_eeprom", "AWB 01/14, LSC 01/58", "AWB ok, LSC ok"},
    };
    for (const auto& [name, unsealed, sealed] : kCases) {
        const EepromCheckSumDesc* const layout = FindEepromLayout(std::string_view(name));
        ASSERT_NE(layout, nullptr) << name;
        Bytes image = ImageOf(*layout);
        image[layout->headerIdOffset + 3] ^= 0xFF;  // plays no part
        EXPECT_EQ(FindEepromLayout(image), layout) << name;
        EXPECT_EQ(Text(CheckRanges(image, *layout)), unsealed);
        StoreCheckSums(*layout, image);
        EXPECT_EQ(Text(CheckRanges(image, *layout)), sealed);
        image[layout->headerIdOffset] ^= 1;
        EXPECT_EQ(FindEepromLayout(image), nullptr) << name;
    }
    EXPECT_EQ(FindEepromLayout(std::string_view("imx707_eeprom")), nullptr);
}

TEST(EepromImage, FieldsOfAModule) {
    Bytes image(tables::kEepromImageSize);
    const auto put = [&image](std::size_t at, const Bytes& bytes) {
        std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<std::ptrdiff_t>(at));
    };
    put(1, {3, 0xA1, 0xA2});
    put(8, {0x1A});
    put(12, {7});
    put(16354, {1, 'Q', 'R'});
    put(0x20F2, {0x23, 0x28, 5});
    put(0x210D, {9});
    put(0x2112, {0xFF, 0xFE, 6});
    put(0x212D, {255});
    const ModuleIdentity identity = ReadIdentity(image);
    EXPECT_EQ(identity.vendorId, 3);
    EXPECT_EQ(identity.lensId, 0x1A);
    EXPECT_EQ(identity.sensorId, 7);
    EXPECT_EQ(ReadFuseId(image, {.fuseIdOffset = 2, .fuseIdLength = 3, .propName = "", .propNameLong = ""}),
              (Bytes{0xA1, 0xA2, 0}));
    const QRCodeDescriptor qrCode{.qrCodeOffset = 16355, .qrCodeLength = 3, .flagOffset = 16354};
    EXPECT_EQ(ReadQRCode(image, qrCode), (Bytes{'Q', 'R', 0}));
    image[16354] = 2;
    EXPECT_EQ(ReadQRCode(image, qrCode), std::nullopt);
    EXPECT_EQ(ReadStabiliserParameters(image), (std::array{9000, 65534, 5, 6, 309, 555}));
    image[1] = 4;
    EXPECT_EQ(ReadStabiliserParameters(image), (std::array{9000, 65534, 5, 6, 209, 455}));
}

TEST(EepromImage, WhatLiesBeyondTheEndReadsAsZero) {
    std::mt19937 random(5);
    for (const std::size_t size :
         std::initializer_list<std::size_t>{0, 1, 2, 9, 16, 67, 1893, 8396, 8433, 16383, 16384, 20000}) {
        Bytes image(size);
        std::generate(image.begin(), image.end(), [&random] { return static_cast<std::uint8_t>(random()); });
        Bytes padded = image;
        padded.resize(30000);
        EXPECT_EQ(FindEepromLayout(image), FindEepromLayout(padded));
        EXPECT_EQ(ReadStabiliserParameters(image), ReadStabiliserParameters(padded));
        EXPECT_EQ(ReadIdentity(image).sensorId, ReadIdentity(padded).sensorId);
        EXPECT_EQ(EepromCheckSum(image, 5, SIZE_MAX), EepromCheckSum(padded, 5, 29999));
        for (const EepromCheckSumDesc& layout : tables::kEepromLayouts) {
            EXPECT_EQ(Text(CheckRanges(image, layout)), Text(CheckRanges(padded, layout))) << size;
            Bytes sealed = image;
            StoreCheckSums(layout, sealed);  // writes nothing beyond the end
        }
        for (const int at : {-5, 0, 16380, INT_MAX}) {
            const FuseIdDescriptor fuseId{
                .fuseIdOffset = at, .fuseIdLength = 9, .propName = "", .propNameLong = ""};
            EXPECT_EQ(ReadFuseId(image, fuseId).size(), 9U);
            EXPECT_LE(ReadQRCode(image, {at, -1, at}).value_or(Bytes()).size(), 0U);
        }
    }
    EXPECT_EQ(EepromCheckSum(Bytes(3, 9), 2, 1), 1);
}

}  // namespace

}  // namespace formats
