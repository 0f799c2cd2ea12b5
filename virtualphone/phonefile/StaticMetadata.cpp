#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tables/PublishedTags.h"
#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

namespace {

template <typename Item, typename Read>
record::TagValues ReadItems(const JsonValue& value, const Read& read) {
    std::vector<Item> items;
    for (const JsonValue& element : value.elements()) {
        items.push_back(read(element));
    }
    return record::TagValues(std::move(items));
}

template <typename Item>
record::TagValues ReadIntegers(const JsonValue& value) {
    return ReadItems<Item>(value, [](const JsonValue& v) { return v.integer<Item>(); });
}

record::TagValues ReadNone(const JsonValue& value) {
    if (!value.elements().empty()) {
        value.elements().front().fail("no values where the type is none");
    }
    return {};
}

record::TagValues ReadFloats(const JsonValue& value) {
    return ReadItems<float>(value, [](const JsonValue& v) { return v.floatingPoint(); });
}

record::TagValues ReadMemories(const JsonValue& value) {
    return ReadItems<record::Blob>(value, [](const JsonValue& v) { return v.hex(); });
}

using Reader = record::TagValues (*)(const JsonValue& values);

/// In the order of `tables::TagItemType`.
constexpr std::array<Reader, tables::kTagItemTypeNames.size()> kReaders = {
    ReadNone,   ReadIntegers<std::int32_t>, ReadIntegers<std::int64_t>,
    ReadFloats, ReadIntegers<std::uint8_t>, ReadMemories,
};

Reader ReadType(const JsonValue& value) {
    std::string known;
    for (std::size_t type = 0; type < kReaders.size(); ++type) {
        const char* const name = tables::kTagItemTypeNames[type];
        if (value.text() == name) {
            return kReaders[type];
        }
        known += (known.empty() ? "" : ", ") + std::string(name);
    }
    value.fail("one of the types " + known);
}

record::TagValues ReadValues(const JsonValue& value) {
    Reader read = nullptr;
    std::optional<JsonValue> values;
    value.readKeys({
        {"type", [&](const JsonValue& v) { read = ReadType(v); }},
        {"values", [&](const JsonValue& v) { values = v; }},
    });
    if (read == nullptr) {
        value.fail(R"(a "type")", "an entry without");
    }
    return values ? read(*values) : record::TagValues();
}

}  // namespace

void ReadStaticMetadata(const JsonValue& value, PhoneDescription& phone) {
    for (const auto& [provider, tags] : value.numberedMembers<tables::ProviderId>()) {
        std::map<std::uint32_t, record::TagValues> ascending;
        for (const auto& [tag, values] : tags.numberedMembers<std::uint32_t>()) {
            ascending.emplace(tag, ReadValues(values));
        }
        record::TagSet& set = phone.staticMetadata[provider];
        for (auto& [tag, values] : ascending) {
            set.push_back({.tag = tag, .values = std::move(values)});
        }
    }
}

}  // namespace virtualphone
