#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/IMetadata.h"

namespace virtualphone {

/// One call of property_set.
struct PropertySet {
    std::string name;
    std::string value;
    bool stored = false;  ///< false: the call was refused
};

/// One merge of additional metadata into a provider.
struct ProviderMerge {
    std::uint32_t provider = 0;
    NSCam::IMetadata metadata;
};

/// One read of a module's memory, whether it succeeded or not.
struct EepromRead {
    std::uint32_t sensorId = 0;
    std::uint32_t deviceBit = 0;
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
};

/// One line of the Android log.
struct LogLine {
    int priority = 0;
    std::string tag;
    std::string message;
};

/// A file that is not as it was when the phone started.
struct ChangedFile {
    std::string path;   ///< on the phone
    unsigned mode = 0;  ///< permission bits
    std::vector<std::uint8_t> bytes;
};

/// What happened on a phone, each kind in the order of the calls.
struct Record {
    std::vector<PropertySet> properties;
    std::vector<ProviderMerge> devices;
    std::vector<std::vector<std::uint8_t>> thirdCalibration;
    std::vector<EepromRead> eepromReads;
    std::vector<LogLine> log;
};

}  // namespace virtualphone
