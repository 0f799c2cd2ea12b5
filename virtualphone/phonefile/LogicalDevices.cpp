#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

void ReadLogicalDevices(const JsonValue& value, PhoneDescription& phone) {
    for (const JsonValue& element : value.elements()) {
        LogicalDeviceDescription device;
        element.readKeys({
            {"name", [&](const JsonValue& v) { device.name = v.text(); }},
            {"multiSensor", [&](const JsonValue& v) { device.multiSensor = v.boolean(); }},
            {"sensorIds",
             [&](const JsonValue& v) {
                 for (const JsonValue& sensorId : v.elements()) {
                     device.members.push_back(sensorId.integer<tables::MemberSensorId>());
                 }
             }},
            {"sensorBits", [&](const JsonValue& v) { device.sensorBits = v.integer<tables::DeviceBits>(); }},
        });
        phone.logicalDevices.push_back(device);
    }
}

}  // namespace virtualphone
