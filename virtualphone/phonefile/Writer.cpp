#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "formats/DecimalText.h"
#include "formats/Hex.h"
#include "formats/PrintableText.h"
#include "tables/EepromLayouts.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/phonefile/internal/Sections.h"

namespace virtualphone {

namespace {

using Bytes = std::span<const std::uint8_t>;

JsonNode Text(std::string text) {
    return {std::move(text)};
}

template <typename Int>
JsonNode Integer(Int number) {
    return {static_cast<std::int64_t>(number)};
}

template <typename List, typename ToNode>
JsonNode ArrayOf(const List& list, const ToNode& toNode) {
    JsonNode::Array array;
    for (const auto& element : list) {
        array.push_back(toNode(element));
    }
    return {std::move(array)};
}

/// An object that leaves out what a phone file need not say.
class ObjectOf {
  public:
    ObjectOf& set(std::string key, JsonNode node) {
        mMembers.push_back({std::move(key), std::move(node)});
        return *this;
    }
    template <typename Value, typename ToNode>
    ObjectOf& unlessDefault(std::string key, const Value& value, const ToNode& toNode,
                            const Value& usual = {}) {
        return value == usual ? *this : set(std::move(key), toNode(value));
    }
    /// A member of its own for each pair of `map`.
    template <typename Map, typename ToKey, typename ToNode>
    ObjectOf& map(std::string key, const Map& map, const ToKey& toKey, const ToNode& toNode) {
        ObjectOf members;
        for (const auto& [name, value] : map) {
            members.set(toKey(name), toNode(value));
        }
        return map.empty() ? *this : set(std::move(key), members.node());
    }
    JsonNode node() { return {std::move(mMembers)}; }

  private:
    JsonNode::Object mMembers;
};

JsonNode True(bool) {
    return {true};
}

template <typename Numbering>
JsonNode NumberNode(Numbering number) {
    return Integer(Number(number));
}

template <typename Numbering>
std::string NumberKey(Numbering number) {
    return std::to_string(Number(number));
}

std::uint8_t MostFrequent(Bytes bytes) {
    std::array<std::size_t, 256> counts{};
    for (const std::uint8_t byte : bytes) {
        ++counts[byte];
    }
    return static_cast<std::uint8_t>(std::max_element(counts.begin(), counts.end()) - counts.begin());
}

/// What differs from `fill`, in hexadecimal by offset. A gap that costs less than another offset stays
/// inside.
JsonNode::Object Differences(Bytes bytes, std::uint8_t fill) {
    constexpr std::size_t kLongestGap = 8;
    const auto differs = [fill](std::uint8_t byte) { return byte != fill; };
    JsonNode::Object runs;
    auto start = std::find_if(bytes.begin(), bytes.end(), differs);
    while (start != bytes.end()) {
        auto end = start;
        auto next = start;
        do {
            end = std::find(next, bytes.end(), fill);
            next = std::find_if(end, bytes.end(), differs);
        } while (next != bytes.end() && static_cast<std::size_t>(next - end) <= kLongestGap);
        const Bytes run(start, end);
        runs.push_back({std::to_string(start - bytes.begin()), Text(formats::UpperHex(run))});
        start = next;
    }
    return runs;
}

/// Whether bytes are a text that people read.
bool IsReadable(std::string_view text) {
    while (!text.empty()) {
        const int codePoint = formats::TakeUtf8(text);
        if (codePoint < 0x20 ? codePoint != '\n' && codePoint != '\t'
                             : codePoint >= 0x7F && codePoint < 0xA0) {
            return false;
        }
    }
    return true;
}

/// The shortest of the forms that hold these bytes.
JsonNode Content(const std::vector<std::uint8_t>& bytes) {
    if (bytes.empty()) {
        return ObjectOf().node();
    }
    const std::uint8_t fill = MostFrequent(bytes);
    JsonNode::Object differences = Differences(bytes, fill);
    std::size_t filledLength = sizeof(R"("fill": 255, "size": 65536)");
    for (const JsonMember& run : differences) {
        filledLength += run.key.size() + std::get<std::string>(run.node.value).size() + sizeof(R"("": "",)");
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (bytes.size() <= filledLength && IsReadable(text)) {
        return ObjectOf().set("text", Text(std::string(text))).node();
    }
    if (2 * bytes.size() <= filledLength) {
        return ObjectOf().set("hex", Text(formats::UpperHex(bytes))).node();
    }
    ObjectOf filled;
    filled.set("fill", Integer(fill)).set("size", Integer(bytes.size()));
    if (!differences.empty()) {
        filled.set("bytes", {std::move(differences)});
    }
    return filled.node();
}

/// The name of a side file; null where the content stands inside.
template <typename Key>
const std::string* NameOf(const std::map<Key, std::string>& names, const Key& key) {
    const auto found = names.find(key);
    return found == names.end() ? nullptr : &found->second;
}

JsonNode Files(const std::map<std::string, std::vector<std::uint8_t>>& files, const SideFiles& sideFiles) {
    ObjectOf object;
    for (const auto& [path, bytes] : files) {
        const std::string* const name = NameOf(sideFiles.files, path);
        object.set(path, name == nullptr ? Content(bytes) : ObjectOf().set("file", Text(*name)).node());
    }
    return object.node();
}

JsonNode Eeprom(const EepromDescription& eeprom, const std::string* sideFile) {
    const std::uint8_t fill = MostFrequent(eeprom.image);
    ObjectOf object;
    if (sideFile != nullptr) {
        object.set("file", Text(*sideFile));
    } else {
        object.unlessDefault("fill", fill, Integer<std::uint8_t>);
        if (JsonNode::Object differences = Differences(eeprom.image, fill); !differences.empty()) {
            object.set("bytes", {std::move(differences)});
        }
    }
    if (eeprom.readReturns) {
        object.set("readReturns", Integer(*eeprom.readReturns));
    }
    return object.node();
}

JsonNode Pair(std::int64_t first, std::int64_t second) {
    return {JsonNode::Array{{first}, {second}}};
}

JsonNode Size(const PixelSize& size) {
    return Pair(size.width, size.height);
}

JsonNode Autofocus(const AutofocusDescription& autofocus) {
    return ObjectOf()
        .unlessDefault("capable", autofocus.capable, True)
        .set("points",
             ArrayOf(autofocus.points,
                     [](const FocusPoint& point) { return Pair(point.distance, point.lensPosition); }))
        .node();
}

JsonNode Sensor(const SensorDescription& sensor, tables::SensorIndex index, const SideFiles& sideFiles) {
    const auto end = std::find_if(sensor.modes.rbegin(), sensor.modes.rend(),
                                  [](const PixelSize& size) { return size != PixelSize(); });
    const std::vector<PixelSize> modes(sensor.modes.begin(), end.base());
    ObjectOf object;
    object
        .unlessDefault("deviceBits", sensor.deviceBits, NumberNode<tables::DeviceBits>,
                       DefaultDeviceBits(index))
        .unlessDefault("deviceId", sensor.deviceId, NumberNode<tables::DeviceId>, DefaultDeviceId(index))
        .unlessDefault("sensorId", sensor.chipSensorId,
                       [](tables::ChipSensorId id) { return Text(formats::HexNumber(Number(id))); })
        .unlessDefault("pixelArray", sensor.pixelArray, Size)
        .unlessDefault("captureSize", sensor.captureSize, Size)
        .unlessDefault("modes", modes, [](const auto& list) { return ArrayOf(list, Size); });
    if (sensor.eeprom) {
        object.set("eeprom", Eeprom(*sensor.eeprom, NameOf(sideFiles.memories, index)));
    }
    if (sensor.autofocus) {
        object.set("af", Autofocus(*sensor.autofocus));
    }
    return object
        .unlessDefault("inSensorZoom", sensor.inSensorZoom,
                       [](const auto& list) { return ArrayOf(list, Integer<std::int32_t>); })
        .node();
}

JsonNode Sensors(const std::vector<SensorDescription>& sensors, const SideFiles& sideFiles) {
    JsonNode::Array array;
    for (const SensorDescription& sensor : sensors) {
        array.push_back(Sensor(sensor, tables::SensorIndex{static_cast<int>(array.size())}, sideFiles));
    }
    return {std::move(array)};
}

JsonNode Alias(const SensorAlias& alias) {
    return ObjectOf()
        .set("deviceBits", NumberNode(alias.deviceBits))
        .set("deviceId", NumberNode(alias.deviceId))
        .node();
}

JsonNode LogicalDevice(const LogicalDeviceDescription& device) {
    return ObjectOf()
        .unlessDefault("name", device.name, Text)
        .unlessDefault("multiSensor", device.multiSensor, True)
        .unlessDefault(
            "sensorIds", device.members,
            [](const auto& members) { return ArrayOf(members, NumberNode<tables::MemberSensorId>); })
        .unlessDefault("sensorBits", device.sensorBits, NumberNode<tables::DeviceBits>)
        .node();
}

/// The shortest decimal number that reads back as the same float.
JsonNode Float(float number) {
    if (std::isnan(number)) {
        return Text("NaN");
    }
    if (std::isinf(number)) {
        return Text(number < 0 ? "-Infinity" : "Infinity");
    }
    std::array<char, 32> text;
    const char* const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    const double readable =
        formats::ParseDecimal({text.data(), static_cast<std::size_t>(end - text.data())}).value_or(number);
    return {static_cast<float>(readable) == number ? readable : static_cast<double>(number)};
}

JsonNode Values(const record::TagValues& values) {
    ObjectOf object;
    object.set("type", Text(tables::NameOf(values.type())));
    values.visit([&object](const auto items) {
        using Item = typename decltype(items)::value_type;
        if (items.empty()) {
            return;
        }
        object.set("values", ArrayOf(items, [](const Item& item) {
                       if constexpr (std::is_same_v<Item, record::Blob>) {
                           return Text(formats::UpperHex(item));
                       } else if constexpr (std::is_same_v<Item, float>) {
                           return Float(item);
                       } else {
                           return Integer(item);
                       }
                   }));
    });
    return object.node();
}

JsonNode Tags(const record::TagSet& tags) {
    ObjectOf object;
    for (const record::Tag& tag : tags) {
        object.set(formats::HexNumber(tag.tag), Values(tag.values));
    }
    return object.node();
}

JsonNode Faults(const PhoneFaults& faults) {
    const auto numbers = [](const auto& list) {
        return ArrayOf(list, [](const auto number) { return NumberNode(number); });
    };
    return ObjectOf()
        .unlessDefault("moduleFactory", faults.moduleFactory, True)
        .unlessDefault("logicalDeviceList", faults.logicalDeviceList, True)
        .unlessDefault("sensorList", faults.sensorList, True)
        .unlessDefault("calibrationDriver", faults.calibrationDriver, True)
        .unlessDefault("sensorDrivers", faults.sensorDrivers, numbers)
        .unlessDefault("sensorObjects", faults.sensorObjects, numbers)
        .unlessDefault("staticInfo", faults.staticInfo, numbers)
        .map(
            "metadataUpdate", faults.metadataUpdate,
            [](std::uint32_t tag) { return formats::HexNumber(tag); }, Integer<std::int32_t>)
        .unlessDefault("propertySet", faults.propertySet,
                       [](const auto& names) { return ArrayOf(names, Text); })
        .node();
}

std::string Key(const std::string& key) {
    return key;
}

}  // namespace

std::string PhoneFileText(const PhoneDescription& phone, const SideFiles& sideFiles) {
    const JsonNode document =
        ObjectOf()
            .unlessDefault("name", phone.name, Text)
            .map("properties", phone.properties, Key, Text)
            .unlessDefault("files", phone.files, [&](const auto& files) { return Files(files, sideFiles); })
            .unlessDefault("sensors", phone.sensors,
                           [&](const auto& sensors) { return Sensors(sensors, sideFiles); })
            .map("sensorAliases", phone.sensorAliases, NumberKey<tables::SensorIndex>, Alias)
            .unlessDefault("logicalDevices", phone.logicalDevices,
                           [](const auto& devices) { return ArrayOf(devices, LogicalDevice); })
            .map("sensorDeviceIndexes", phone.sensorDeviceIndexes, NumberKey<tables::MemberSensorId>,
                 NumberNode<tables::DeviceIndex>)
            .map(
                "staticMetadata", phone.staticMetadata,
                [](tables::ProviderId id) { return formats::HexNumber(Number(id)); }, Tags)
            .unlessDefault("faults", phone.faults, Faults)
            .node();
    return JsonText(document) + "\n";
}

void WritePhoneFile(std::ostream& out, const PhoneDescription& phone) {
    out << PhoneFileText(phone);
}

}  // namespace virtualphone
