#include <cstdint>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "formats/Hex.h"

namespace {

TEST(Hex, NumbersAsPeopleWriteThem) {
    const struct {
        std::string text;
        std::optional<std::uint32_t> number;
    } kCases[] = {
        {"7", 7},
        {"0", 0},
        {"010", 10},
        {"0x40007", 0x40007},
        {"0X1f", 0x1F},
        {"4294967295", 4294967295},
        {"0xFFFFFFFF", 4294967295},
        {"4294967296", {}},
        {"0x100000000", {}},
        {"", {}},
        {"0x", {}},
        {"1F", {}},
        {"-1", {}},
        {"+1", {}},
        {" 1", {}},
        {"1 ", {}},
        {"0x-1", {}},
    };
    for (const auto& [text, number] : kCases) {
        EXPECT_EQ(formats::ParseNumber(text), number) << text;
    }
}

}  // namespace
