#pragma once

#include <string>
#include <vector>

#include "tests/support/TestPhone.h"
#include "tests/support/TestPlugin.h"

/// What tests of the plug-in on small phones share.

/// A sensor of a small phone.
struct JsonSensor {
    int deviceId;
    std::string keys = {};  ///< its other keys, such as R"("eeprom": {"fill": 7})"
};

/// A phone with these sensors, at index 0 and on. Those whose device id is no sensor index answer to it as
/// well, as the back wide does under 7; device ids from 32 on stay unknown.
inline std::string JsonPhoneOf(const std::vector<JsonSensor>& sensors, const std::string& phoneKeys = {}) {
    const auto member = [](const std::string& keys) { return keys.empty() ? "" : ", " + keys; };
    std::string list;
    std::string aliases;
    for (const JsonSensor& sensor : sensors) {
        const std::string deviceId = std::to_string(sensor.deviceId);
        list += (list.empty() ? "" : ", ") + ("{\"deviceId\": " + deviceId) + member(sensor.keys) + "}";
        if (sensor.deviceId >= static_cast<int>(sensors.size()) && sensor.deviceId < 32) {
            aliases += (aliases.empty() ? "\"" : ", \"") + deviceId +
                       "\": {\"deviceBits\": " + std::to_string(1U << sensor.deviceId) +
                       ", \"deviceId\": " + deviceId + "}";
        }
    }
    return "{\"sensors\": [" + list + "], \"sensorAliases\": {" + aliases + "}" + member(phoneKeys) + "}";
}
