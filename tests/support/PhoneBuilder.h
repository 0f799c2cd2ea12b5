#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tables/PublishedTags.h"
#include "virtualphone/PhoneDescription.h"

using Bytes = std::vector<std::uint8_t>;

/// A module's memory: `fill` all over, then bytes as hexadecimal text by offset, such as {{1, "03"}}.
Bytes Eeprom(const std::map<std::size_t, std::string>& bytes = {}, std::uint8_t fill = 0);

/// A sensor as a test says it; what it leaves out is as in a phone file.
struct FittedSensor {
    std::optional<int> deviceId = {};  ///< the sensor's index
    std::optional<Bytes> eeprom = {};
    std::optional<std::uint32_t> readReturns = {};
    std::optional<std::uint32_t> deviceBits = {};  ///< 1 << the sensor's index
    std::uint32_t sensorId = 0;
    std::array<int, 2> pixelArray = {};
    std::array<int, 2> captureSize = {};
    std::map<std::size_t, std::array<int, 2>> modes = {};  ///< sizes by mode; the others are 0 by 0
    std::optional<virtualphone::AutofocusDescription> autofocus = {};
    std::vector<std::int32_t> inSensorZoom = {};
};

struct LogicalDevice {
    std::vector<int> sensorIds = {};
    bool multiSensor = false;
    std::uint32_t sensorBits = 0;
    std::string name = {};
};

struct Faults {
    bool moduleFactory = false;
    bool logicalDeviceList = false;
    bool sensorList = false;
    bool calibrationDriver = false;
    std::set<int> sensorDrivers = {};
    std::set<int> sensorObjects = {};
    std::set<int> staticInfo = {};
    std::map<std::uint32_t, std::int32_t> metadataUpdate = {};
    std::set<std::string, std::less<>> propertySet = {};
};

/// A small phone, said in one expression:
///
///     PhoneOf({{7, Eeprom({{1, "03"}})}, {1}}).property("a", "1").faults({.sensorDrivers = {0}})
class PhoneBuilder {
  public:
    PhoneBuilder() = default;
    explicit PhoneBuilder(virtualphone::PhoneDescription phone) : mPhone(std::move(phone)) {}

    /// Each of these adds to what is there, and sets what stands there under the same key.
    PhoneBuilder& sensors(const std::vector<FittedSensor>& sensors);
    PhoneBuilder& alias(int index, std::uint32_t deviceBits, int deviceId);
    PhoneBuilder& devices(const std::vector<LogicalDevice>& devices);
    PhoneBuilder& deviceIndex(int sensorId, int deviceIndex);
    PhoneBuilder& property(const std::string& name, const std::string& value);
    PhoneBuilder& file(const std::string& path, const Bytes& bytes);
    /// What a metadata provider holds before start-up; no items: an entry that is stored empty.
    template <typename Item = std::int32_t>
    PhoneBuilder& holds(std::uint32_t provider, std::uint32_t tag, const std::vector<Item>& items) {
        record::TagSet& set = mPhone.staticMetadata[tables::ProviderId{provider}];
        std::erase_if(set, [tag](const record::Tag& held) { return held.tag == tag; });
        const auto place =
            std::find_if(set.begin(), set.end(), [tag](const auto& held) { return held.tag > tag; });
        set.insert(place, {.tag = tag, .values = record::TagValues(items)});
        return *this;
    }
    PhoneBuilder& faults(const Faults& faults);

    const virtualphone::PhoneDescription& description() const { return mPhone; }

  private:
    virtualphone::PhoneDescription mPhone;
};

/// A phone with these sensors. Those whose device id is no sensor index answer to it as well, as the back
/// wide does under 7; device ids from 32 on stay unknown.
PhoneBuilder PhoneOf(const std::vector<FittedSensor>& sensors);
