#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "record/TagValues.h"

/// What a boot does to the platform, one event a call.
namespace record {

/// One line of the Android log.
struct LogLine {
    int priority = 0;  ///< as Android numbers them: 3 debug, 4 info, 6 error
    std::string tag;
    std::string message;

    friend bool operator==(const LogLine&, const LogLine&) = default;
};

/// One call of property_get or property_get_int32.
struct PropertyAsked {
    std::string name;
    std::optional<std::string> value;  ///< what it is set to; none: the caller got its default

    friend bool operator==(const PropertyAsked&, const PropertyAsked&) = default;
};

/// One call of property_set.
struct PropertySet {
    std::string name;
    std::string value;
    bool stored = false;  ///< false: the call was refused

    friend bool operator==(const PropertySet&, const PropertySet&) = default;
};

/// One read of a module's memory, whether it succeeded or not.
struct EepromRead {
    std::uint32_t sensorId = 0;  ///< the chip's
    std::uint32_t deviceBit = 0;
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    /// Bytes that came back, as the driver claims; anything but `length` is a failed read. None in a record
    /// of an older report, which does not say.
    std::optional<std::uint32_t> read;

    friend bool operator==(const EepromRead&, const EepromRead&) = default;
};

/// One read of a module's autofocus record.
struct AutofocusRead {
    std::uint32_t deviceBit = 0;
    bool succeeded = false;

    friend bool operator==(const AutofocusRead&, const AutofocusRead&) = default;
};

/// One path of the phone that the plug-in resolved in order to open it.
struct PathOpened {
    std::string path;

    friend bool operator==(const PathOpened&, const PathOpened&) = default;
};

/// What else the plug-in asked the platform for.
enum class Query : std::uint8_t {
    LogicalDeviceList,    ///< the list itself; answer 1, or 0 for null
    DeviceCount,          ///< of the logical device list
    SensorIds,            ///< of an instance; the answer is the whole list
    SensorDeviceIndex,    ///< of a member's sensor id
    IsMultiSensorDevice,  ///< of an instance
    SensorBits,           ///< of an instance
    DeviceName,           ///< of an instance; the answer is a text
    SensorList,           ///< the list itself; answer 1, or 0 for null
    SensorCount,          ///< of the sensor list
    DeviceBits,           ///< of a sensor index
    DeviceId,             ///< of a sensor index
    StaticInfoByBit,      ///< by device bit; answer 1, or 0 where there is none
    StaticInfoById,       ///< by device id; answer 1, or 0 for null
    SensorObject,         ///< of a sensor id; answer 1, or 0 for null
    SensorCommand,        ///< command number; the answer is the reply
    SensorDriver,         ///< of a sensor index; answer 1, or 0 for null
    CalibrationDriver,    ///< answer 1, or 0 for null
    CalibrationHelper,    ///< answer 1, or 0 for null
};

/// One such question.
struct Asked {
    Query query = Query::SensorList;
    std::int64_t about = 0;  ///< index, id or command that was asked about; 0 where there is none
    std::vector<std::int64_t> answer;
    std::string text;  ///< the answer of a question for a text

    friend bool operator==(const Asked&, const Asked&) = default;
};

/// One question for a metadata provider.
struct ProviderAsked {
    std::uint32_t provider = 0;

    friend bool operator==(const ProviderAsked&, const ProviderAsked&) = default;
};

/// One update of a metadata set.
struct TagStored {
    std::uint32_t tag = 0;
    int result = 0;           ///< 0, or the error code of a refusal
    std::uint32_t count = 0;  ///< items

    friend bool operator==(const TagStored&, const TagStored&) = default;
};

/// One merge of additional metadata into a provider.
struct ProviderMerge {
    std::uint32_t provider = 0;
    TagSet metadata;

    friend bool operator==(const ProviderMerge&, const ProviderMerge&) = default;
};

/// One calibration block handed to the platform's third calibration service.
struct HandOver {
    Blob block;

    friend bool operator==(const HandOver&, const HandOver&) = default;
};

using Event = std::variant<LogLine, PropertyAsked, PropertySet, EepromRead, AutofocusRead, PathOpened, Asked,
                           ProviderAsked, TagStored, ProviderMerge, HandOver>;

}  // namespace record
