#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace record {

/// The members of a JSON object as they stand in the text. A parser's look-up of a member that is there
/// already would make many members slow: each access by key adds one, so a name may stand twice.
template <typename Key, typename Value, typename Order = std::less<Key>,
          typename Allocator = std::allocator<std::pair<const Key, Value>>>
struct Members : nlohmann::ordered_map<Key, Value, Order, Allocator> {
    using nlohmann::ordered_map<Key, Value, Order, Allocator>::ordered_map;

    Value& operator[](const Key& key) {
        this->emplace_back(key, Value());
        return this->back().second;
    }
};

/// Ordered members, and single-precision floats, so that 0.6F prints as 0.6.
using Json =
    nlohmann::basic_json<Members, std::vector, std::string, bool, std::int64_t, std::uint64_t, float>;

/// Names of `Query` in a report, in the order of its values.
inline constexpr const char* kQueryNames[] = {
    "logicalDeviceList", "deviceCount",       "sensorIds",         "sensorDeviceIndex", "isMultiSensorDevice",
    "sensorBits",        "deviceName",        "sensorList",        "sensorCount",       "deviceBits",
    "deviceId",          "staticInfoByBit",   "staticInfoById",    "sensorObject",      "sensorCommand",
    "sensorDriver",      "calibrationDriver", "calibrationHelper",
};

/// Deepest nesting of a report: arrays and objects in each other.
inline constexpr int kDeepestNesting = 64;

/// Most values of a report, where a member of an object counts as three: it takes the memory of three. A true
/// report of 64 MiB, the largest file that is read, has some 9 million.
inline constexpr std::size_t kMostReportValues = 10'000'000;
/// Most of them in one list, where their number would make a list grow to twice its size.
inline constexpr std::size_t kMostReportElements = std::size_t{1} << 20;

}  // namespace record
