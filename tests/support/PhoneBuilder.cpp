#include "tests/support/PhoneBuilder.h"

#include <algorithm>
#include <charconv>

#include "tables/EepromLayouts.h"

namespace {

/// Plain numbers as those of a numbering.
template <typename Numbering, template <typename...> typename List>
List<Numbering> As(const List<int>& numbers) {
    List<Numbering> typed;
    for (const int number : numbers) {
        typed.insert(typed.end(), Numbering{number});
    }
    return typed;
}

virtualphone::PixelSize SizeOf(const std::array<int, 2>& size) {
    return {.width = static_cast<std::uint16_t>(size[0]), .height = static_cast<std::uint16_t>(size[1])};
}

}  // namespace

Bytes Eeprom(const std::map<std::size_t, std::string>& bytes, std::uint8_t fill) {
    Bytes image(tables::kEepromImageSize, fill);
    for (const auto& [offset, hex] : bytes) {
        for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
            std::from_chars(&hex[i], &hex[i] + 2, image.at(offset + i / 2), 16);
        }
    }
    return image;
}

PhoneBuilder& PhoneBuilder::sensors(const std::vector<FittedSensor>& sensors) {
    for (const FittedSensor& fitted : sensors) {
        const std::size_t index = mPhone.sensors.size();
        virtualphone::SensorDescription& sensor = mPhone.sensors.emplace_back();
        sensor.deviceBits = tables::DeviceBits{fitted.deviceBits.value_or(1U << index)};
        sensor.deviceId = tables::DeviceId{fitted.deviceId.value_or(static_cast<int>(index))};
        sensor.chipSensorId = tables::ChipSensorId{fitted.sensorId};
        sensor.pixelArray = SizeOf(fitted.pixelArray);
        sensor.captureSize = SizeOf(fitted.captureSize);
        for (const auto& [mode, size] : fitted.modes) {
            sensor.modes.at(mode) = SizeOf(size);
        }
        if (fitted.eeprom) {
            sensor.eeprom = {.image = *fitted.eeprom, .readReturns = fitted.readReturns};
        }
        sensor.autofocus = fitted.autofocus;
        sensor.inSensorZoom = fitted.inSensorZoom;
    }
    return *this;
}

PhoneBuilder& PhoneBuilder::alias(int index, std::uint32_t deviceBits, int deviceId) {
    mPhone.sensorAliases[tables::SensorIndex{index}] = {.deviceBits = tables::DeviceBits{deviceBits},
                                                        .deviceId = tables::DeviceId{deviceId}};
    return *this;
}

PhoneBuilder& PhoneBuilder::devices(const std::vector<LogicalDevice>& devices) {
    for (const LogicalDevice& device : devices) {
        mPhone.logicalDevices.push_back({.name = device.name,
                                         .multiSensor = device.multiSensor,
                                         .members = As<tables::MemberSensorId>(device.sensorIds),
                                         .sensorBits = tables::DeviceBits{device.sensorBits}});
    }
    return *this;
}

PhoneBuilder& PhoneBuilder::deviceIndex(int sensorId, int deviceIndex) {
    mPhone.sensorDeviceIndexes[tables::MemberSensorId{sensorId}] = tables::DeviceIndex{deviceIndex};
    return *this;
}

PhoneBuilder& PhoneBuilder::property(const std::string& name, const std::string& value) {
    mPhone.properties[name] = value;
    return *this;
}

PhoneBuilder& PhoneBuilder::file(const std::string& path, const Bytes& bytes) {
    mPhone.files[path] = bytes;
    return *this;
}

PhoneBuilder& PhoneBuilder::faults(const Faults& faults) {
    mPhone.faults = {.moduleFactory = faults.moduleFactory,
                     .logicalDeviceList = faults.logicalDeviceList,
                     .sensorList = faults.sensorList,
                     .calibrationDriver = faults.calibrationDriver,
                     .sensorDrivers = As<tables::SensorIndex>(faults.sensorDrivers),
                     .sensorObjects = As<tables::SensorIndex>(faults.sensorObjects),
                     .staticInfo = As<tables::DeviceId>(faults.staticInfo),
                     .metadataUpdate = faults.metadataUpdate,
                     .propertySet = faults.propertySet};
    return *this;
}

PhoneBuilder PhoneOf(const std::vector<FittedSensor>& sensors) {
    PhoneBuilder phone;
    phone.sensors(sensors);
    for (const FittedSensor& sensor : sensors) {
        if (const int id = sensor.deviceId.value_or(0); id >= static_cast<int>(sensors.size()) && id < 32) {
            phone.alias(id, 1U << id, id);
        }
    }
    return phone;
}
