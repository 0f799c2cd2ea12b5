#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "record/TagValues.h"
#include "tables/Numberings.h"

namespace virtualphone {

/// Most sensors of a phone: one device bit each.
inline constexpr std::size_t kMaxSensors = 32;

/// Output modes that a sensor driver describes.
inline constexpr std::size_t kSensorModeCount = 20;

/// Calibrated focus positions in a module's 3A record.
inline constexpr std::size_t kFocusPointCount = 2;

/// Longest value of a property, in bytes.
inline constexpr std::size_t kLongestPropertyValue = 91;

/// A picture size in pixels.
struct PixelSize {
    std::uint16_t width = 0;
    std::uint16_t height = 0;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// The memory of one camera module.
struct EepromDescription {
    /// tables::kEepromImageSize bytes.
    std::vector<std::uint8_t> image;
    /// What the driver claims to have read, whatever it was asked for. Empty: what it did read.
    std::optional<std::uint32_t> readReturns;

    friend bool operator==(const EepromDescription&, const EepromDescription&) = default;
};

/// One calibrated focus position.
struct FocusPoint {
    std::int32_t distance = 0;      ///< subject distance, in tenths of the unit that is published
    std::int32_t lensPosition = 0;  ///< position of the lens actuator

    friend bool operator==(const FocusPoint&, const FocusPoint&) = default;
};

/// The autofocus part of a module's 3A record.
struct AutofocusDescription {
    bool capable = false;
    std::array<FocusPoint, kFocusPointCount> points;

    friend bool operator==(const AutofocusDescription&, const AutofocusDescription&) = default;
};

/// One sensor of the sensor list.
struct SensorDescription {
    tables::DeviceBits deviceBits{};
    tables::DeviceId deviceId{};
    tables::ChipSensorId chipSensorId{};
    PixelSize pixelArray;   ///< unbinned
    PixelSize captureSize;  ///< of the still picture mode
    std::array<PixelSize, kSensorModeCount> modes;
    std::optional<EepromDescription> eeprom;  ///< none: every read fails
    std::optional<AutofocusDescription> autofocus;
    std::vector<std::int32_t> inSensorZoom;  ///< the reply to the sensor command of that name

    friend bool operator==(const SensorDescription&, const SensorDescription&) = default;
};

/// What the sensor list answers for an index that is no sensor.
struct SensorAlias {
    tables::DeviceBits deviceBits{};
    tables::DeviceId deviceId{-1};

    friend bool operator==(const SensorAlias&, const SensorAlias&) = default;
};

/// One camera device of the logical device list.
struct LogicalDeviceDescription {
    std::string name;
    bool multiSensor = false;
    std::vector<tables::MemberSensorId> members;  ///< master first
    tables::DeviceBits sensorBits{};

    friend bool operator==(const LogicalDeviceDescription&, const LogicalDeviceDescription&) = default;
};

/// What a phone gets wrong.
struct PhoneFaults {
    bool moduleFactory = false;
    bool logicalDeviceList = false;
    bool sensorList = false;
    bool calibrationDriver = false;
    std::set<tables::SensorIndex> sensorDrivers;
    std::set<tables::SensorIndex> sensorObjects;
    std::set<tables::DeviceId> staticInfo;
    std::map<std::uint32_t, std::int32_t> metadataUpdate;  ///< result of every update, by tag
    std::set<std::string, std::less<>> propertySet;        ///< names that are refused

    friend bool operator==(const PhoneFaults&, const PhoneFaults&) = default;
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
    /// For indices that are no sensor.
    std::map<tables::SensorIndex, SensorAlias> sensorAliases;
    /// Position = logical index.
    std::vector<LogicalDeviceDescription> logicalDevices;
    /// What the logical device list answers for a member; the device id of the sensor index of that number
    /// where it is not listed.
    std::map<tables::MemberSensorId, tables::DeviceIndex> sensorDeviceIndexes;
    /// What the metadata providers held before start-up; ascending tags, each once.
    std::map<tables::ProviderId, record::TagSet> staticMetadata;
    PhoneFaults faults;

    friend bool operator==(const PhoneDescription&, const PhoneDescription&) = default;
};

}  // namespace virtualphone
