#include <numeric>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

#include "formats/FuseIdText.h"

namespace formats {

namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(FuseIdText, FixedFields) {
    const std::string filler(26, '0');
    const struct {
        const char* maker;
        std::size_t fuseIdLength;
        std::optional<std::string> qrCode;
        std::string text;
    } kCases[] = {
        {"_aac", 11, std::nullopt,
         "_aac0022A1A2A3A4A5A6A7A8A9AAAB0000000000000000000000000000000000" + filler},
        {"sunny", 16, std::string("TELE\0\0\0\0\0\0\0\0\0z", 14),
         "sunn0032A1A2A3A4A5A6A7A8A9AAABACADAEAFB00000000014TELE"},
        {"ofilm", 16, std::string(14, '\0'), "ofil0032A1A2A3A4A5A6A7A8A9AAABACADAEAFB00000000014"},
        // The row of a maker that keeps no QR code.
        {"truly", 11, "", "trul0022A1A2A3A4A5A6A7A8A9AAAB0000000000000000000000000000000000" + filler},
        // More than there is room for.
        {"qtech", 20, "ABCDEFGHIJKLMNOPQRST",
         "qtec0040A1A2A3A4A5A6A7A8A9AAABACADAEAFB00000000020ABCDEFGHIJKLMN" + filler},
    };
    for (const auto& [maker, fuseIdLength, qrCode, text] : kCases) {
        Bytes fuseId(fuseIdLength);
        std::iota(fuseId.begin(), fuseId.end(), std::uint8_t{0xA1});
        const Bytes qrBytes = qrCode ? Bytes(qrCode->begin(), qrCode->end()) : Bytes();
        EXPECT_EQ(MakeFuseIdText(maker, fuseId, qrCode ? std::optional(std::span(qrBytes)) : std::nullopt),
                  text);
    }
}

TEST(FuseIdText, ReadsTheFuseIdBack) {
    const struct {
        const char* text;
        int length;
        const char* hex;
    } kCases[] = {
        {"semc00040102030405", 4, "0102"}, {"semc0024", 24, ""},         {"semc00240102", 24, "0102"},
        {"semc00000102", 0, ""},           {"semc-0020102", -2, "0102"}, {"semc12xx0102", 12, "0102"},
    };
    for (const auto& [text, length, hex] : kCases) {
        const FuseIdField fuseId = ParseFuseIdText(text);
        EXPECT_EQ(fuseId.length, length) << text;
        EXPECT_EQ(fuseId.hex, hex) << text;
        EXPECT_TRUE(TryParseFuseIdText(text)) << text;
    }
    for (const char* malformed : {"", "semc002", "semcxyz", "semcx0240102", "semcA0240102", "semc    0102"}) {
        EXPECT_FALSE(TryParseFuseIdText(malformed)) << malformed;
    }
    EXPECT_THROW(ParseFuseIdText("semcxyz"), std::out_of_range);
    EXPECT_THROW(ParseFuseIdText("semc    0102"), std::invalid_argument);
}

}  // namespace

}  // namespace formats
