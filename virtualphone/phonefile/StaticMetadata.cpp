#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

struct ItemType {
    std::string_view name;
    record::TagValues (*read)(const JsonValue& value);
};

constexpr ItemType kItemTypes[] = {
    {"none",
     [](const JsonValue& value) {
         if (!value.elements().empty()) {
             value.elements().front().fail("no values where the type is none");
         }
         return record::TagValues();
     }},
    {"int32", ReadIntegers<std::int32_t>},
    {"int64", ReadIntegers<std::int64_t>},
    {"float",
     [](const JsonValue& value) {
         return ReadItems<float>(value, [](const JsonValue& v) { return v.floatingPoint(); });
     }},
    {"byte", ReadIntegers<std::uint8_t>},
    {"memory",
     [](const JsonValue& value) {
         return ReadItems<record::Blob>(value, [](const JsonValue& v) { return v.hex(); });
     }},
};

const ItemType& ReadType(const JsonValue& value) {
    std::string known;
    for (const ItemType& type : kItemTypes) {
        if (value.text() == type.name) {
            return type;
        }
        known += (known.empty() ? "" : ", ") + std::string(type.name);
    }
    value.fail("one of the types " + known);
}

record::TagValues ReadValues(const JsonValue& value) {
    const ItemType* type = nullptr;
    std::optional<JsonValue> values;
    value.readKeys({
        {"type", [&](const JsonValue& v) { type = &ReadType(v); }},
        {"values", [&](const JsonValue& v) { values = v; }},
    });
    if (type == nullptr) {
        value.fail(R"(a "type")", "an entry without");
    }
    return values ? type->read(*values) : record::TagValues();
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
