#include <optional>
#include <string>
#include <vector>

#include "virtualphone/phonefile/Sections.h"

namespace virtualphone {

namespace {

using Entry = NSCam::IMetadata::IEntry;
using Memory = NSCam::IMetadata::Memory;

/// Appends one value to an entry.
using Append = void (*)(const JsonValue& value, Entry& entry);

struct EntryType {
    std::string_view name;
    Append append;
};

constexpr EntryType kEntryTypes[] = {
    {"none", [](const JsonValue& v, Entry&) { v.fail("no values where the type is none"); }},
    {"int32", [](const JsonValue& v, Entry& entry) { entry.push_back(v.integer<std::int32_t>()); }},
    {"int64", [](const JsonValue& v, Entry& entry) { entry.push_back(v.integer<std::int64_t>()); }},
    {"float", [](const JsonValue& v, Entry& entry) { entry.push_back(v.floatingPoint()); }},
    {"byte", [](const JsonValue& v, Entry& entry) { entry.push_back(v.integer<std::uint8_t>()); }},
    {"memory",
     [](const JsonValue& v, Entry& entry) {
         const std::vector<std::uint8_t> bytes = v.hex();
         entry.push_back(Memory(bytes.data(), bytes.size()));
     }},
};

const EntryType& ReadType(const JsonValue& value) {
    std::string known;
    for (const EntryType& type : kEntryTypes) {
        if (value.text() == type.name) {
            return type;
        }
        known += (known.empty() ? "" : ", ") + std::string(type.name);
    }
    value.fail("one of the types " + known);
}

Entry ReadEntry(std::uint32_t tag, const JsonValue& value) {
    const EntryType* type = &kEntryTypes[0];
    std::optional<JsonValue> values;
    value.readKeys({
        {"type", [&](const JsonValue& v) { type = &ReadType(v); }},
        {"values", [&](const JsonValue& v) { values = v; }},
    });
    Entry entry(tag);
    if (values) {
        for (const JsonValue& element : values->elements()) {
            type->append(element, entry);
        }
    }
    return entry;
}

}  // namespace

void ReadStaticMetadata(const JsonValue& value, PhoneDescription& phone) {
    for (const auto& [provider, tags] : value.numberedMembers<std::uint32_t>()) {
        std::vector<Entry>& entries = phone.staticMetadata[provider];
        for (const auto& [tag, entry] : tags.numberedMembers<std::uint32_t>()) {
            entries.push_back(ReadEntry(tag, entry));
        }
    }
}

}  // namespace virtualphone
