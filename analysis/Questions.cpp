#include "analysis/Questions.h"

#include <array>
#include <string_view>
#include <type_traits>

#include "formats/Hex.h"

namespace analysis {

namespace {

using record::Query;

/// How an answer reads.
enum class Answer { Number, Hex, List, Present, YesNo, Text };

/// How a kind of question reads; "*" stands for what it is about.
struct Wording {
    Query query;
    std::string_view words;
    bool hexAbout;
    Answer answer;
};

constexpr std::array<Wording, 18> kWordings = {{
    {Query::LogicalDeviceList, "the logical device list", false, Answer::Present},
    {Query::DeviceCount, "number of logical devices", false, Answer::Number},
    {Query::SensorIds, "sensor ids of device *", false, Answer::List},
    {Query::SensorDeviceIndex, "device index of member *", false, Answer::Number},
    {Query::IsMultiSensorDevice, "whether device * has several sensors", false, Answer::YesNo},
    {Query::SensorBits, "sensor bits of device *", false, Answer::Hex},
    {Query::DeviceName, "name of device *", false, Answer::Text},
    {Query::SensorList, "the sensor list", false, Answer::Present},
    {Query::SensorCount, "number of sensors", false, Answer::Number},
    {Query::DeviceBits, "device bits of sensor index *", false, Answer::Hex},
    {Query::DeviceId, "device id of sensor index *", false, Answer::Number},
    {Query::StaticInfoByBit, "static information of device bit *", true, Answer::Present},
    {Query::StaticInfoById, "static information of device id *", false, Answer::Present},
    {Query::SensorObject, "sensor object of sensor id *", false, Answer::Present},
    {Query::SensorCommand, "reply to sensor command *", true, Answer::List},
    {Query::SensorDriver, "sensor driver of sensor index *", false, Answer::Present},
    {Query::CalibrationDriver, "the calibration driver", false, Answer::Present},
    {Query::CalibrationHelper, "the calibration helper", false, Answer::Present},
}};

/// A negative number as the 64 bits that it has.
std::string Hex(std::int64_t number) {
    return formats::HexNumber(static_cast<std::uint64_t>(number));
}

std::string AnswerInWords(const record::Asked& asked, Answer kind) {
    if (kind == Answer::Text) {
        return asked.text.empty() ? "none" : asked.text;
    }
    if (asked.answer.empty()) {
        return "none";
    }
    const std::int64_t first = asked.answer.front();
    switch (kind) {
        case Answer::Hex:
            return Hex(first);
        case Answer::Present:
            return first != 0 ? "found" : "null";
        case Answer::YesNo:
            return first != 0 ? "yes" : "no";
        default:
            break;
    }
    std::string list;
    for (const std::int64_t number : asked.answer) {
        list += (list.empty() ? "" : ", ") + std::to_string(number);
    }
    return list;
}

std::string InWords(const record::Asked& asked) {
    for (const Wording& wording : kWordings) {
        if (wording.query == asked.query) {
            std::string words(wording.words);
            if (const std::size_t star = words.find('*'); star != std::string::npos) {
                words.replace(star, 1, wording.hexAbout ? Hex(asked.about) : std::to_string(asked.about));
            }
            return words + ": " + AnswerInWords(asked, wording.answer);
        }
    }
    return {};
}

std::string InWords(const record::PropertyAsked& asked) {
    return "property " + asked.name + ": " + (asked.value ? *asked.value : "not set");
}

std::string InWords(const record::EepromRead& read) {
    return std::to_string(read.length) + " bytes of the memory of device bit " + Hex(read.deviceBit) + ": " +
           (read.read ? std::to_string(*read.read) + " came back"
                      : std::string("nobody says how many came back"));
}

std::string InWords(const record::AutofocusRead& read) {
    return "3A record of device bit " + Hex(read.deviceBit) + ": " +
           (read.succeeded ? "read" : "cannot be read");
}

std::string InWords(const record::PathOpened& opened) {
    return "file " + opened.path;
}

std::string InWords(const record::ProviderAsked& asked) {
    return "metadata provider " + Hex(asked.provider);
}

}  // namespace

std::string QuestionInWords(const record::Event& event) {
    return std::visit(
        [](const auto& kind) -> std::string {
            if constexpr (requires { InWords(kind); }) {
                return InWords(kind);
            } else {
                return {};
            }
        },
        event);
}

}  // namespace analysis
