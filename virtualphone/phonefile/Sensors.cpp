#include <optional>
#include <string>
#include <vector>

#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

namespace {

/// Two numbers in an array.
template <typename Int>
std::array<Int, 2> ReadPair(const JsonValue& value, const char* expected) {
    const std::vector<JsonValue> elements = value.elements();
    if (elements.size() != 2) {
        value.fail(expected, std::to_string(elements.size()) + " elements");
    }
    return {elements[0].integer<Int>(), elements[1].integer<Int>()};
}

PixelSize ReadSize(const JsonValue& value) {
    const auto [width, height] = ReadPair<std::uint16_t>(value, "a size as [width, height]");
    return {.width = width, .height = height};
}

AutofocusDescription ReadAutofocus(const JsonValue& value) {
    AutofocusDescription autofocus;
    value.readKeys({
        {"capable", [&](const JsonValue& v) { autofocus.capable = v.boolean(); }},
        {"points",
         [&](const JsonValue& v) {
             auto point = autofocus.points.begin();
             for (const JsonValue& element : v.elements(autofocus.points.size())) {
                 const auto [distance, lensPosition] =
                     ReadPair<std::int32_t>(element, "a focus point as [distance, lens position]");
                 *point++ = {.distance = distance, .lensPosition = lensPosition};
             }
         }},
    });
    return autofocus;
}

SensorDescription ReadSensor(const JsonValue& value, tables::SensorIndex index,
                             const std::filesystem::path& folder) {
    SensorDescription sensor;
    sensor.deviceBits = DefaultDeviceBits(index);
    sensor.deviceId = DefaultDeviceId(index);
    value.readKeys({
        {"deviceBits", [&](const JsonValue& v) { sensor.deviceBits = v.integer<tables::DeviceBits>(); }},
        {"deviceId", [&](const JsonValue& v) { sensor.deviceId = v.integer<tables::DeviceId>(); }},
        {"sensorId", [&](const JsonValue& v) { sensor.chipSensorId = v.integer<tables::ChipSensorId>(); }},
        {"pixelArray", [&](const JsonValue& v) { sensor.pixelArray = ReadSize(v); }},
        {"captureSize", [&](const JsonValue& v) { sensor.captureSize = ReadSize(v); }},
        {"modes",
         [&](const JsonValue& v) {
             auto mode = sensor.modes.begin();
             for (const JsonValue& element : v.elements(sensor.modes.size())) {
                 *mode++ = ReadSize(element);
             }
         }},
        {"eeprom", [&](const JsonValue& v) { sensor.eeprom = ReadEeprom(v, folder); }},
        {"af", [&](const JsonValue& v) { sensor.autofocus = ReadAutofocus(v); }},
        {"inSensorZoom",
         [&](const JsonValue& v) {
             for (const JsonValue& element : v.elements()) {
                 sensor.inSensorZoom.push_back(element.integer<std::int32_t>());
             }
         }},
    });
    return sensor;
}

}  // namespace

tables::DeviceBits DefaultDeviceBits(tables::SensorIndex index) {
    const int bit = Number(index);
    return tables::DeviceBits{bit >= 0 && bit < static_cast<int>(kMaxSensors) ? std::uint32_t{1} << bit : 0};
}

tables::DeviceId DefaultDeviceId(tables::SensorIndex index) {
    return tables::DeviceId{Number(index)};
}

void ReadSensors(const JsonValue& value, const std::filesystem::path& folder, PhoneDescription& phone) {
    for (const JsonValue& element : value.elements(kMaxSensors)) {
        phone.sensors.push_back(
            ReadSensor(element, tables::SensorIndex{static_cast<int>(phone.sensors.size())}, folder));
    }
}

void ReadSensorAliases(const JsonValue& value, PhoneDescription& phone) {
    const int sensorCount = static_cast<int>(phone.sensors.size());
    for (const auto& [index, element] : value.numberedMembers<tables::SensorIndex>()) {
        if (Number(index) >= 0 && Number(index) < sensorCount) {
            element.fail("an index that is no sensor as the key", std::to_string(Number(index)));
        }
        SensorAlias alias{.deviceBits = DefaultDeviceBits(index), .deviceId = DefaultDeviceId(index)};
        element.readKeys({
            {"deviceBits", [&](const JsonValue& v) { alias.deviceBits = v.integer<tables::DeviceBits>(); }},
            {"deviceId", [&](const JsonValue& v) { alias.deviceId = v.integer<tables::DeviceId>(); }},
        });
        phone.sensorAliases[index] = alias;
    }
}

}  // namespace virtualphone
