#include "tests/support/Describe.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <type_traits>

namespace {

using Entry = NSCam::IMetadata::IEntry;

template <typename Item>
std::string ItemText(const Item& item) {
    if constexpr (std::is_same_v<Item, NSCam::IMetadata::Memory>) {
        return std::to_string(item.size()) + " bytes";
    } else if constexpr (std::is_same_v<Item, float>) {
        std::array<char, 32> text;
        return {text.data(), std::to_chars(text.data(), text.data() + text.size(), item).ptr};
    } else {
        return std::to_string(item);
    }
}

template <typename Item>
std::string List(const char* type, const Entry& entry) {
    std::string text = std::string(type) + " [";
    for (std::size_t i = 0; i < entry.count(); ++i) {
        text += (i == 0 ? "" : ", ") + ItemText(entry.itemAt<Item>(i));
    }
    return text + "]";
}

}  // namespace

std::string Describe(const Entry& entry) {
    using Type = NSCam::IMetadata::Type;
    switch (entry.type()) {
        case Type::Int32:
            return List<std::int32_t>("int32", entry);
        case Type::Int64:
            return List<std::int64_t>("int64", entry);
        case Type::Float:
            return List<float>("float", entry);
        case Type::Byte:
            return List<unsigned char>("byte", entry);
        case Type::Memory:
            return List<NSCam::IMetadata::Memory>("memory", entry);
        case Type::None:
            break;
    }
    return "none";
}

Tags DescribeAll(const NSCam::IMetadata& metadata) {
    Tags tags;
    for (const Entry& entry : metadata.entries()) {
        tags[TagText(entry.tag())] = Describe(entry);
    }
    return tags;
}

std::string TagText(std::uint32_t tag) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "0x%X", tag);
    return text.data();
}

std::string HexText(std::span<const std::uint8_t> bytes) {
    std::string hex;
    for (const std::uint8_t byte : bytes) {
        std::array<char, 4> digits;
        std::snprintf(digits.data(), digits.size(), "%02X", byte);
        hex += digits.data();
    }
    return hex;
}
