#include "record/Report.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "formats/Hex.h"
#include "record/internal/ReportJson.h"
#include "tables/PublishedTags.h"

namespace record {

namespace {

template <typename Item>
Json ItemReport(const Item& item) {
    if constexpr (std::is_same_v<Item, Blob>) {
        return formats::UpperHex(item);
    } else if constexpr (std::is_same_v<Item, float>) {
        if (std::isnan(item)) {
            return "NaN";
        }
        if (std::isinf(item)) {
            return item > 0 ? "Infinity" : "-Infinity";
        }
        return item;
    } else {
        return item;
    }
}

Json TagReport(const Tag& tag) {
    Json report;
    report["tag"] = formats::HexNumber(tag.tag);
    if (const tables::PublishedTag* known = tables::FindPublishedTag(tag.tag)) {
        report["name"] = known->name;
    }
    report["type"] = tables::NameOf(tag.values.type());
    Json& values = report["values"] = Json::array();
    tag.values.visit([&values](const auto& items) {
        for (const auto& item : items) {
            values.push_back(ItemReport(item));
        }
    });
    return report;
}

Json EndReport(const Ended& ended) {
    Json report;
    report["how"] = kEndings[static_cast<std::size_t>(ended.how)];
    switch (ended.how) {
        case Ended::How::Signal:
            report["signal"] = SignalName(ended.signal);
            break;
        case Ended::How::Exited:
            report["status"] = ended.exitStatus;
            break;
        case Ended::How::Timeout:
            report["seconds"] = static_cast<float>(ended.seconds);
            break;
        case Ended::How::Returned:
        case Ended::How::Threw:
            break;
    }
    if (!ended.step.empty()) {
        report["step"] = ended.step;
    }
    return report;
}

Json FilesReport(const std::vector<ChangedFile>& files) {
    Json report = Json::object();
    for (const ChangedFile& file : files) {
        report[file.path] = {{"size", file.bytes.size()},
                             {"mode", ModeText(file.mode)},
                             {"hex", formats::UpperHex(file.bytes)}};
    }
    return report;
}

/// Puts each event into the list of its kind, where it has one, and into the list of all.
class Lists {
  public:
    void add(const Event& event) {
        std::visit([this](const auto& of) { take(of); }, event);
    }

    Json log = Json::array();
    Json properties = Json::array();
    Json devices = Json::array();
    Json thirdCalibration = Json::array();
    Json eepromReads = Json::array();
    Json events = Json::array();

  private:
    void take(const LogLine& line) {
        point("log", log, {{"priority", line.priority}, {"tag", line.tag}, {"message", line.message}});
    }
    void take(const PropertySet& set) {
        point("property", properties, {{"name", set.name}, {"value", set.value}, {"stored", set.stored}});
    }
    void take(const EepromRead& read) {
        Json report{{"sensorId", read.sensorId},
                    {"deviceBit", read.deviceBit},
                    {"offset", read.offset},
                    {"length", read.length}};
        if (read.read) {
            report["read"] = *read.read;
        }
        point("eepromRead", eepromReads, std::move(report));
    }
    void take(const ProviderMerge& merge) {
        Json metadata = Json::array();
        for (const Tag& tag : merge.metadata) {
            metadata.push_back(TagReport(tag));
        }
        point("device", devices,
              {{"provider", formats::HexNumber(merge.provider)}, {"metadata", std::move(metadata)}});
    }
    void take(const HandOver& handOver) {
        point("thirdCalibration", thirdCalibration, {{"hex", formats::UpperHex(handOver.block)}});
    }
    void take(const PropertyAsked& asked) {
        events.push_back({{"asked", asked.name}, {"value", asked.value ? Json(*asked.value) : Json()}});
    }
    void take(const AutofocusRead& read) {
        events.push_back({{"autofocusRead", read.deviceBit}, {"succeeded", read.succeeded}});
    }
    void take(const PathOpened& opened) { events.push_back({{"opened", opened.path}}); }
    void take(const Asked& asked) {
        events.push_back(
            {{"query", kQueryNames[static_cast<std::size_t>(asked.query)]},
             {"about", asked.about},
             {"answer", asked.query == Query::DeviceName ? Json(asked.text) : Json(asked.answer)}});
    }
    void take(const ProviderAsked& asked) {
        events.push_back({{"provider", formats::HexNumber(asked.provider)}});
    }
    void take(const TagStored& stored) {
        events.push_back(
            {{"stored", formats::HexNumber(stored.tag)}, {"result", stored.result}, {"count", stored.count}});
    }

    void point(const char* kind, Json& list, Json report) {
        events.push_back({{kind, list.size()}});
        list.push_back(std::move(report));
    }
};

Json MakeReport(const BootRecord& boot) {
    Lists lists;
    for (const Event& event : boot.events) {
        lists.add(event);
    }
    Json report;
    if (boot.ordered) {
        report["format"] = 1;
    }
    report["phone"] = boot.phone;
    if (boot.plugin) {
        report["plugin"] = {{"path", boot.plugin->path}, {"buildId", boot.plugin->buildId}};
    }
    // A record without order is that of an older report, which says "exception" alone.
    if (boot.ended && (boot.ordered || boot.ended->how != Ended::How::Threw)) {
        report["ended"] = EndReport(*boot.ended);
    }
    report["properties"] = std::move(lists.properties);
    report["files"] = FilesReport(boot.files);
    if (!boot.rewritten.empty()) {
        report["rewritten"] = FilesReport(boot.rewritten);
    }
    if (boot.foreignFiles > 0) {
        report["foreignFiles"] = boot.foreignFiles;
    }
    report["devices"] = std::move(lists.devices);
    report["thirdCalibration"] = std::move(lists.thirdCalibration);
    report["eepromReads"] = std::move(lists.eepromReads);
    report["log"] = std::move(lists.log);
    if (boot.ended && boot.ended->how == Ended::How::Threw) {
        report["exception"] = boot.ended->what;
    }
    if (!boot.troubles.empty()) {
        report["troubles"] = boot.troubles;
    }
    if (boot.ordered) {
        report["events"] = std::move(lists.events);
    }
    if (!boot.description.empty()) {
        report["description"] = Json::parse(boot.description, nullptr, /*allow_exceptions=*/true,
                                            /*ignore_comments=*/true);
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

void WriteReport(std::ostream& out, const BootRecord& boot) {
    Write(out, MakeReport(boot), 0);
    out << '\n';
}

}  // namespace record
