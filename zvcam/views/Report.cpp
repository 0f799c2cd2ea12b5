#include "zvcam/views/Report.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "tables/PublishedTags.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

/// Ordered keys, and single-precision floats, so that 0.6F prints as 0.6.
using Json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                  std::uint64_t, float>;
using Entry = NSCam::IMetadata::IEntry;
using Memory = NSCam::IMetadata::Memory;

Json Value(std::int32_t item) {
    return item;
}
Json Value(std::int64_t item) {
    return item;
}
Json Value(unsigned char item) {
    return item;
}
Json Value(const Memory& item) {
    return HexBytes(item);
}
Json Value(float item) {
    if (std::isnan(item)) {
        return "NaN";
    }
    if (std::isinf(item)) {
        return item > 0 ? "Infinity" : "-Infinity";
    }
    return item;
}

template <typename Item>
Json ValuesAs(const Entry& entry) {
    Json values = Json::array();
    for (std::size_t i = 0; i < entry.count(); ++i) {
        values.push_back(Value(entry.itemAt<Item>(i)));
    }
    return values;
}

Json Values(const Entry& entry) {
    using Type = NSCam::IMetadata::Type;
    switch (entry.type()) {
        case Type::Int32:
            return ValuesAs<std::int32_t>(entry);
        case Type::Int64:
            return ValuesAs<std::int64_t>(entry);
        case Type::Float:
            return ValuesAs<float>(entry);
        case Type::Byte:
            return ValuesAs<unsigned char>(entry);
        case Type::Memory:
            return ValuesAs<Memory>(entry);
        case Type::None:
            break;
    }
    return Json::array();
}

Json EntryReport(const Entry& entry) {
    Json report;
    report["tag"] = HexNumber(entry.tag());
    if (const tables::PublishedTag* tag = tables::FindPublishedTag(entry.tag())) {
        report["name"] = tag->name;
    }
    report["type"] = TypeName(entry.type());
    report["values"] = Values(entry);
    return report;
}

Json DeviceReport(const virtualphone::ProviderMerge& merge) {
    Json metadata = Json::array();
    for (const Entry& entry : merge.metadata.entries()) {
        metadata.push_back(EntryReport(entry));
    }
    return {{"provider", HexNumber(merge.provider)}, {"metadata", std::move(metadata)}};
}

Json MakeReport(const supervisor::BootOutcome& outcome) {
    const virtualphone::Record& record = outcome.record;
    Json report;
    report["phone"] = outcome.phone;
    Json& properties = report["properties"] = Json::array();
    for (const virtualphone::PropertySet& set : record.properties) {
        properties.push_back({{"name", set.name}, {"value", set.value}, {"stored", set.stored}});
    }
    Json& files = report["files"] = Json::object();
    for (const virtualphone::ChangedFile& file : outcome.files) {
        files[file.path] = {
            {"size", file.bytes.size()}, {"mode", ModeText(file.mode)}, {"hex", HexBytes(file.bytes)}};
    }
    Json& devices = report["devices"] = Json::array();
    for (const virtualphone::ProviderMerge& merge : record.devices) {
        devices.push_back(DeviceReport(merge));
    }
    Json& thirdCalibration = report["thirdCalibration"] = Json::array();
    for (const std::vector<std::uint8_t>& block : record.thirdCalibration) {
        thirdCalibration.push_back({{"hex", HexBytes(block)}});
    }
    Json& eepromReads = report["eepromReads"] = Json::array();
    for (const virtualphone::EepromRead& read : record.eepromReads) {
        eepromReads.push_back({{"sensorId", read.sensorId},
                               {"deviceBit", read.deviceBit},
                               {"offset", read.offset},
                               {"length", read.length}});
    }
    Json& log = report["log"] = Json::array();
    for (const virtualphone::LogLine& line : record.log) {
        log.push_back({{"priority", line.priority}, {"tag", line.tag}, {"message", line.message}});
    }
    if (outcome.exception) {
        report["exception"] = *outcome.exception;
    }
    return report;
}

/// Levels of arrays and objects, the value's own included.
int Height(const Json& value) {
    int height = 0;
    if (value.is_structured()) {
        for (const Json& element : value) {
            height = std::max(height, Height(element));
        }
        ++height;
    }
    return height;
}

std::string Scalar(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Writes one element a line down to what fits on one: a property, a file, a tag with all its values.
void Write(std::ostream& out, const Json& value, int depth) {
    if (!value.is_structured() || value.empty()) {
        out << Scalar(value);
        return;
    }
    const bool split = depth < 2 || Height(value) > 2;
    const std::string lead = split ? "\n" + std::string(2 * static_cast<std::size_t>(depth) + 2, ' ') : "";
    const std::string next = split ? "," + lead : ", ";
    const char* separator = lead.c_str();
    out << (value.is_object() ? '{' : '[');
    for (const auto& [key, element] : value.items()) {
        out << separator;
        if (value.is_object()) {
            out << Scalar(key) << ": ";
        }
        Write(out, element, depth + 1);
        separator = next.c_str();
    }
    if (split) {
        out << lead.substr(0, lead.size() - 2);
    }
    out << (value.is_object() ? '}' : ']');
}

}  // namespace

void WriteReport(std::ostream& out, const supervisor::BootOutcome& outcome) {
    Write(out, MakeReport(outcome), 0);
    out << '\n';
}

}  // namespace zvcam
