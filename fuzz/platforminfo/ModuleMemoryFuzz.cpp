// A whole boot with any bytes as the memory of the wide and the front module.

#include <algorithm>

#include "fuzz/support/FreshPlugin.h"
#include "fuzz/support/Fuzzing.h"
#include "tables/EepromLayouts.h"

namespace {

virtualphone::SensorDescription Sensor(int index, int deviceId, const std::uint8_t* data, std::size_t size) {
    virtualphone::SensorDescription sensor;
    sensor.deviceBits = tables::DeviceBits{1U << index};
    sensor.deviceId = tables::DeviceId{deviceId};
    sensor.eeprom.emplace();
    sensor.eeprom->image.assign(data, data + std::min(size, tables::kEepromImageSize));
    sensor.eeprom->image.resize(tables::kEepromImageSize);
    return sensor;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::size_t half = size / 2;
    virtualphone::PhoneDescription phone;
    phone.properties["vendor.debug.camera.eeprom_dump"] = "1";
    phone.sensors = {Sensor(0, 7, data, half), Sensor(1, 1, data + half, size - half)};
    phone.sensorAliases[tables::SensorIndex{7}] = {.deviceBits = tables::DeviceBits{1U << 7},
                                                   .deviceId = tables::DeviceId{7}};
    phone.logicalDevices.resize(8);
    phone.logicalDevices[1].sensorBits = tables::DeviceBits{2};
    phone.logicalDevices[7].sensorBits = tables::DeviceBits{1};
    const FuzzPhone running(std::move(phone));
    FreshPlugin().ExposureModuleInfo();
    return 0;
}
