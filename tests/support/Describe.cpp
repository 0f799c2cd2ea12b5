#include "tests/support/Describe.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <type_traits>

#include "virtualphone/MetadataValues.h"

namespace {

template <typename Item>
std::string ItemText(const Item& item) {
    if constexpr (std::is_same_v<Item, record::Blob>) {
        return std::to_string(item.size()) + " bytes";
    } else if constexpr (std::is_same_v<Item, float>) {
        std::array<char, 32> text;
        return {text.data(), std::to_chars(text.data(), text.data() + text.size(), item).ptr};
    } else {
        return std::to_string(item);
    }
}

}  // namespace

std::string Describe(const record::TagValues& values) {
    constexpr const char* kTypes[] = {"none", "int32 [", "int64 [", "float [", "byte [", "memory ["};
    std::string text = kTypes[static_cast<std::size_t>(values.type())];
    if (values.count() == 0) {
        return text;
    }
    values.visit([&text](const auto& items) {
        for (std::size_t i = 0; i < items.size(); ++i) {
            text += (i == 0 ? "" : ", ") + ItemText(items[i]);
        }
    });
    return text + "]";
}

std::string Describe(const NSCam::IMetadata::IEntry& entry) {
    return Describe(virtualphone::ValuesOf(entry));
}

Tags DescribeAll(const record::TagSet& metadata) {
    Tags tags;
    for (const record::Tag& tag : metadata) {
        tags[TagText(tag.tag)] = Describe(tag.values);
    }
    return tags;
}

Tags DescribeAll(const NSCam::IMetadata& metadata) {
    return DescribeAll(virtualphone::TagsOf(metadata));
}

record::Blob BlobOf(const NSCam::IMetadata::IEntry& entry) {
    const record::TagValues values = virtualphone::ValuesOf(entry);
    const auto blobs = values.as<record::Blob>();
    return blobs.empty() ? record::Blob() : blobs[0];
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
