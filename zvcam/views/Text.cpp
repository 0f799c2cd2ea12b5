#include "zvcam/views/Text.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace zvcam {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

void AppendHex(std::string& text, std::uint8_t byte) {
    text += kHexDigits[byte >> 4];
    text += kHexDigits[byte & 0xF];
}

}  // namespace

std::string HexNumber(std::uint32_t number) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "0x%X", number);
    return text.data();
}

std::string HexBytes(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        AppendHex(text, byte);
    }
    return text;
}

std::string ModeText(unsigned mode) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "%04o", mode);
    return text.data();
}

std::string FloatText(float number) {
    std::array<char, 64> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

const char* TypeName(tables::TagItemType type) {
    using Type = tables::TagItemType;
    switch (type) {
        case Type::Int32:
            return "int32";
        case Type::Int64:
            return "int64";
        case Type::Float:
            return "float";
        case Type::Byte:
            return "byte";
        case Type::Memory:
            return "memory";
        case Type::None:
            break;
    }
    return "none";
}

std::string Printable(std::string_view text) {
    std::string printable;
    for (const char c : text) {
        const auto byte = static_cast<std::uint8_t>(c);
        if (byte < 0x20 || byte == 0x7F) {
            printable += "\\x";
            AppendHex(printable, byte);
        } else {
            printable += c;
        }
    }
    return printable;
}

}  // namespace zvcam
