#include <set>
#include <string>

#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

namespace {

template <typename Numbering>
void ReadNumbers(const JsonValue& value, std::set<Numbering>& numbers) {
    for (const JsonValue& element : value.elements()) {
        numbers.insert(element.integer<Numbering>());
    }
}

}  // namespace

void ReadFaults(const JsonValue& value, PhoneDescription& phone) {
    PhoneFaults& faults = phone.faults;
    value.readKeys({
        {"moduleFactory", [&](const JsonValue& v) { faults.moduleFactory = v.boolean(); }},
        {"logicalDeviceList", [&](const JsonValue& v) { faults.logicalDeviceList = v.boolean(); }},
        {"sensorList", [&](const JsonValue& v) { faults.sensorList = v.boolean(); }},
        {"calibrationDriver", [&](const JsonValue& v) { faults.calibrationDriver = v.boolean(); }},
        {"sensorDrivers", [&](const JsonValue& v) { ReadNumbers(v, faults.sensorDrivers); }},
        {"sensorObjects", [&](const JsonValue& v) { ReadNumbers(v, faults.sensorObjects); }},
        {"staticInfo", [&](const JsonValue& v) { ReadNumbers(v, faults.staticInfo); }},
        {"metadataUpdate",
         [&](const JsonValue& v) {
             for (const auto& [tag, result] : v.numberedMembers<std::uint32_t>()) {
                 faults.metadataUpdate[tag] = result.integer<std::int32_t>();
             }
         }},
        {"propertySet",
         [&](const JsonValue& v) {
             for (const JsonValue& name : v.elements()) {
                 faults.propertySet.insert(name.plainText());
             }
         }},
    });
}

}  // namespace virtualphone
