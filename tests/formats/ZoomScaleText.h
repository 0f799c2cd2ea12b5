#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <span>
#include <string>

#include "tests/support/Describe.h"

/// "type count capacity 1: ratios: positions" of the record at `offset`, without the zeros past the count.
inline std::string ZoomScaleText(std::span<const std::uint8_t> blob, std::size_t offset = 0) {
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
