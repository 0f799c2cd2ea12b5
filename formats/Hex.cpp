#include "formats/Hex.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace formats {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";
constexpr std::string_view kWhiteSpace = " \t\r\n";

/// The value of a digit, or -1.
constexpr int DigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

}  // namespace

std::string UpperHex(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0xF];
    }
    return text;
}

std::string HexNumber(std::uint64_t number, std::size_t digits) {
    std::string text;
    for (; number != 0 || text.size() < digits; number >>= 4) {
        text += kDigits[number & 0xF];
    }
    text += "x0";
    std::reverse(text.begin(), text.end());
    return text;
}

std::optional<std::uint32_t> ParseNumber(std::string_view text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hexadecimal ? 2 : 0);
    std::uint32_t number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, hexadecimal ? 16 : 10);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<std::vector<std::uint8_t>> ParseHex(std::string_view text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = DigitValue(text[i]);
        if (high < 0 && kWhiteSpace.find(text[i]) != std::string_view::npos) {
            continue;
        }
        const int low = ++i < text.size() ? DigitValue(text[i]) : -1;
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
    }
    return bytes;
}

}  // namespace formats
