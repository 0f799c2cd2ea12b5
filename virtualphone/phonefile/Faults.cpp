#include <set>
#include <string>

#include "virtualphone/phonefile/Sections.h"

namespace virtualphone {

namespace {

std::set<int> ReadNumbers(const JsonValue& value) {
    std::set<int> numbers;
    for (const JsonValue& element : value.elements()) {
        numbers.insert(element.integer<int>());
    }
    return numbers;
}

}  // namespace

void ReadFaults(const JsonValue& value, PhoneDescription& phone) {
    PhoneFaults& faults = phone.faults;
    value.readKeys({
        {"moduleFactory", [&](const JsonValue& v) { faults.moduleFactory = v.boolean(); }},
        {"logicalDeviceList", [&](const JsonValue& v) { faults.logicalDeviceList = v.boolean(); }},
        {"sensorList", [&](const JsonValue& v) { faults.sensorList = v.boolean(); }},
        {"calibrationDriver", [&](const JsonValue& v) { faults.calibrationDriver = v.boolean(); }},
        {"sensorDrivers", [&](const JsonValue& v) { faults.sensorDrivers = ReadNumbers(v); }},
        {"sensorObjects", [&](const JsonValue& v) { faults.sensorObjects = ReadNumbers(v); }},
        {"staticInfo", [&](const JsonValue& v) { faults.staticInfo = ReadNumbers(v); }},
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
