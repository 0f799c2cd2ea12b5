#pragma once

#include <cstdint>
#include <span>
#include <string>

/// Upper-case hexadecimal, two characters a byte, nothing between.
inline std::string UpperHex(std::span<const std::uint8_t> bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text;
}
