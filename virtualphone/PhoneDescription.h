#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/CamCalDrv.h"
#include "platform/IMetadata.h"
#include "platform/ImgSensorDrv.h"
#include "platform/Properties.h"

namespace virtualphone {

/// Most sensors of a phone: one device bit each.
inline constexpr std::size_t kMaxSensors = 32;

/// Longest value of a property, in bytes.
inline constexpr std::size_t kLongestPropertyValue = PROPERTY_VALUE_MAX - 1;

/// A picture size in pixels.
struct PixelSize {
    std::uint16_t width = 0;
    std::uint16_t height = 0;
};

/// The memory of one camera module.
struct EepromDescription {
    /// tables::kEepromImageSize bytes.
    std::vector<std::uint8_t> image;
    /// What the driver claims to have read, whatever it was asked for. Empty: what it did read.
    std::optional<std::uint32_t> readReturns;
};

/// The autofocus part of a module's 3A record.
struct AutofocusDescription {
    bool capable = false;
    std::array<CamCalAfPoint, 2> points;
};

/// One sensor of the sensor list.
struct SensorDescription {
    std::uint32_t deviceBits = 0;
    int deviceId = 0;
    std::uint32_t sensorId = 0;
    PixelSize pixelArray;
    PixelSize captureSize;
    std::array<PixelSize, SENSOR_MODE_COUNT> modes;
    std::optional<EepromDescription> eeprom;
    std::optional<AutofocusDescription> autofocus;
    std::vector<std::int32_t> inSensorZoom;
};

/// What the sensor list answers for an index that is no sensor.
struct SensorAlias {
    std::uint32_t deviceBits = 0;
    int deviceId = -1;
};

/// One camera device of the logical device list.
struct LogicalDeviceDescription {
    std::string name;
    bool multiSensor = false;
    std::vector<int> sensorIds;
    std::uint32_t sensorBits = 0;
};

/// What a phone gets wrong.
struct PhoneFaults {
    bool moduleFactory = false;
    bool logicalDeviceList = false;
    bool sensorList = false;
    bool calibrationDriver = false;
    std::set<int> sensorDrivers;                           ///< sensor indices
    std::set<int> sensorObjects;                           ///< sensor ids of the sensor list
    std::set<int> staticInfo;                              ///< device ids
    std::map<std::uint32_t, std::int32_t> metadataUpdate;  ///< result of every update, by tag
    std::set<std::string, std::less<>> propertySet;        ///< names that are refused
};

/// A phone before it starts.
struct PhoneDescription {
    std::string name;
    /// Set before start-up; values have at most kLongestPropertyValue bytes.
    std::map<std::string, std::string> properties;
    /// File contents by absolute phone path.
    std::map<std::string, std::vector<std::uint8_t>> files;
    /// Position = sensor index; at most kMaxSensors.
    std::vector<SensorDescription> sensors;
    /// By index.
    std::map<int, SensorAlias> sensorAliases;
    /// Position = logical device index.
    std::vector<LogicalDeviceDescription> logicalDevices;
    /// Device index by sensor id of the logical device list.
    std::map<int, int> sensorDeviceIndexes;
    /// What the metadata providers held before start-up, by provider id.
    std::map<std::uint32_t, std::vector<NSCam::IMetadata::IEntry>> staticMetadata;
    PhoneFaults faults;
};

}  // namespace virtualphone
