#include "supervisor/internal/DescriptionBytes.h"

#include <tuple>
#include <type_traits>

#include "record/internal/Frames.h"

namespace virtualphone {

/// What a phone or a part of one consists of. Each binding names all members of its structure, so that none
/// can be forgotten.
static auto Fields(auto& part) {
    using Part = std::remove_cvref_t<decltype(part)>;
    if constexpr (std::is_same_v<Part, PixelSize>) {
        auto& [width, height] = part;
        return std::tie(width, height);
    } else if constexpr (std::is_same_v<Part, EepromDescription>) {
        auto& [image, readReturns] = part;
        return std::tie(image, readReturns);
    } else if constexpr (std::is_same_v<Part, FocusPoint>) {
        auto& [distance, lensPosition] = part;
        return std::tie(distance, lensPosition);
    } else if constexpr (std::is_same_v<Part, AutofocusDescription>) {
        auto& [capable, points] = part;
        return std::tie(capable, points);
    } else if constexpr (std::is_same_v<Part, SensorDescription>) {
        auto& [deviceBits, deviceId, chipSensorId, pixelArray, captureSize, modes, eeprom, autofocus,
               inSensorZoom] = part;
        return std::tie(deviceBits, deviceId, chipSensorId, pixelArray, captureSize, modes, eeprom, autofocus,
                        inSensorZoom);
    } else if constexpr (std::is_same_v<Part, SensorAlias>) {
        auto& [deviceBits, deviceId] = part;
        return std::tie(deviceBits, deviceId);
    } else if constexpr (std::is_same_v<Part, LogicalDeviceDescription>) {
        auto& [name, multiSensor, members, sensorBits] = part;
        return std::tie(name, multiSensor, members, sensorBits);
    } else if constexpr (std::is_same_v<Part, PhoneFaults>) {
        auto& [moduleFactory, logicalDeviceList, sensorList, calibrationDriver, sensorDrivers, sensorObjects,
               staticInfo, metadataUpdate, propertySet] = part;
        return std::tie(moduleFactory, logicalDeviceList, sensorList, calibrationDriver, sensorDrivers,
                        sensorObjects, staticInfo, metadataUpdate, propertySet);
    } else {
        static_assert(std::is_same_v<Part, PhoneDescription>);
        auto& [name, properties, files, sensors, sensorAliases, logicalDevices, sensorDeviceIndexes,
               staticMetadata, faults] = part;
        return std::tie(name, properties, sensors, sensorAliases, logicalDevices, sensorDeviceIndexes,
                        staticMetadata, faults);
    }
}

}  // namespace virtualphone

namespace supervisor {

void AppendPhone(std::vector<std::uint8_t>& bytes, const virtualphone::PhoneDescription& phone,
                 const virtualphone::FailingCalls& failing) {
    record::FrameWriter writer(bytes);
    writer.put(phone);
    writer.put(failing);
}

std::optional<FaultyPhone> ReadPhone(std::span<const std::uint8_t> bytes) {
    record::FrameReader reader(bytes);
    std::optional<FaultyPhone> phone(std::in_place);
    if (!reader.get(phone->first) || !reader.get(phone->second) || !reader.atEnd()) {
        phone.reset();
    }
    return phone;
}

}  // namespace supervisor
