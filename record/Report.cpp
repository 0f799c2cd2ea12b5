#include "record/Report.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "formats/Hex.h"
#include "record/internal/ReportJson.h"
#include "tables/PublishedTags.h"

namespace record {

namespace {

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

/// A line break and the indentation of a depth.
std::string Lead(int depth) {
    return "\n" + std::string(2 * static_cast<std::size_t>(depth), ' ');
}

/// Appends a value with one element a line down to what fits on one.
void Append(std::string& text, const Json& value, int depth) {
    if (!value.is_structured() || value.empty()) {
        text += Scalar(value);
        return;
    }
    const bool split = depth < 2 || Height(value) > 2;
    const std::string lead = split ? Lead(depth + 1) : "";
    const std::string next = split ? "," + lead : ", ";
    const std::string* separator = &lead;
    text += value.is_object() ? '{' : '[';
    for (const auto& [key, element] : value.items()) {
        text += *separator;
        if (value.is_object()) {
            text += Scalar(key) + ": ";
        }
        Append(text, element, depth + 1);
        separator = &next;
    }
    text += split ? Lead(depth) : "";
    text += value.is_object() ? '}' : ']';
}

// A report has thousands of events and ten thousands of items: their text is written straight away. What is
// rare or odd goes through the JSON library.

template <std::integral Number>
void Append(std::string& text, Number number) {
    if constexpr (std::is_same_v<Number, bool>) {
        text += number ? "true" : "false";
    } else {
        text += std::to_string(number);
    }
}

void Append(std::string& text, std::string_view string) {
    const bool plain = std::all_of(string.begin(), string.end(), [](char character) {
        return character >= ' ' && character <= '~' && character != '"' && character != '\\';
    });
    if (plain) {
        text += '"';
        text += string;
        text += '"';
    } else {
        text += Scalar(std::string(string));
    }
}

void Append(std::string& text, float number) {
    if (std::isnan(number)) {
        text += "\"NaN\"";
    } else if (std::isinf(number)) {
        text += number > 0 ? "\"Infinity\"" : "\"-Infinity\"";
    } else {
        text += Scalar(number);
    }
}

void Append(std::string& text, const Blob& bytes) {
    Append(text, formats::UpperHex(bytes));
}

template <typename Item>
void Append(std::string& text, std::span<const Item> items) {
    text += '[';
    const char* separator = "";
    for (const Item& item : items) {
        text += separator;
        Append(text, item);
        separator = ", ";
    }
    text += ']';
}

/// An object on one line, member by member.
class Line {
  public:
    explicit Line(std::string& text) : mText(text) { mText += '{'; }
    ~Line() { mText += '}'; }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    template <typename Value>
    Line& with(std::string_view key, const Value& value) {
        mText += mSeparator;
        mSeparator = ", ";
        Append(mText, key);
        mText += ": ";
        Append(mText, value);
        return *this;
    }

  private:
    std::string& mText;
    const char* mSeparator = "";
};

// Each appends what an event's list says of it.

void Append(std::string& text, const LogLine& line) {
    Line(text).with("priority", line.priority).with("tag", line.tag).with("message", line.message);
}

void Append(std::string& text, const PropertySet& set) {
    Line(text).with("name", set.name).with("value", set.value).with("stored", set.stored);
}

void Append(std::string& text, const EepromRead& read) {
    Line line(text);
    line.with("sensorId", read.sensorId)
        .with("deviceBit", read.deviceBit)
        .with("offset", read.offset)
        .with("length", read.length);
    if (read.read) {
        line.with("read", *read.read);
    }
}

void Append(std::string& text, const HandOver& handOver) {
    Line(text).with("hex", handOver.block);
}

void Append(std::string& text, const Tag& tag) {
    Line line(text);
    line.with("tag", formats::HexNumber(tag.tag));
    if (const tables::PublishedTag* known = tables::FindPublishedTag(tag.tag)) {
        line.with("name", std::string_view(known->name));
    }
    line.with("type", std::string_view(tables::NameOf(tag.values.type())));
    tag.values.visit([&line](const auto& items) { line.with("values", items); });
}

void Append(std::string& text, const ProviderMerge& merge);

/// Elements one a line, those of a list at `depth`; nothing between the brackets where there are none.
template <typename Elements>
void AppendLines(std::string& text, const Elements& elements, int depth) {
    const std::string lead = Lead(depth + 1);
    const char* separator = "";
    text += '[';
    for (const auto& element : elements) {
        text += separator + lead;
        if constexpr (std::is_pointer_v<std::remove_cvref_t<decltype(element)>>) {
            Append(text, *element);
        } else {
            Append(text, element);
        }
        separator = ",";
    }
    text += *separator == '\0' ? "]" : Lead(depth) + "]";
}

void Append(std::string& text, const ProviderMerge& merge) {
    const std::string provider = formats::HexNumber(merge.provider);
    if (merge.metadata.empty()) {
        Line(text).with("provider", provider).with("metadata", std::span<const int>());
        return;
    }
    text += "{" + Lead(3) + "\"provider\": \"" + provider + "\"," + Lead(3) + "\"metadata\": ";
    AppendLines(text, merge.metadata, 3);
    text += Lead(2) + "}";
}

/// Appends what the list of all events says of each: where it stands in the list of its kind, or what
/// happened.
class EventLines {
  public:
    explicit EventLines(std::string& text) : mText(text) {}

    void operator()(const LogLine&) { Line(mText).with("log", mLogLines++); }
    void operator()(const PropertySet&) { Line(mText).with("property", mProperties++); }
    void operator()(const EepromRead&) { Line(mText).with("eepromRead", mEepromReads++); }
    void operator()(const ProviderMerge&) { Line(mText).with("device", mDevices++); }
    void operator()(const HandOver&) { Line(mText).with("thirdCalibration", mHandOvers++); }
    void operator()(const PropertyAsked& asked) {
        Line line(mText);
        line.with("asked", asked.name);
        if (asked.value) {
            line.with("value", *asked.value);
        } else {
            line.with("value", Null());
        }
    }
    void operator()(const AutofocusRead& read) {
        Line(mText).with("autofocusRead", read.deviceBit).with("succeeded", read.succeeded);
    }
    void operator()(const PathOpened& opened) { Line(mText).with("opened", opened.path); }
    void operator()(const Asked& asked) {
        Line line(mText);
        line.with("query", std::string_view(kQueryNames[static_cast<std::size_t>(asked.query)]))
            .with("about", asked.about);
        if (asked.query == Query::DeviceName) {
            line.with("answer", asked.text);
        } else {
            line.with("answer", std::span<const std::int64_t>(asked.answer));
        }
    }
    void operator()(const ProviderAsked& asked) {
        Line(mText).with("provider", formats::HexNumber(asked.provider));
    }
    void operator()(const TagStored& stored) {
        Line(mText)
            .with("stored", formats::HexNumber(stored.tag))
            .with("result", stored.result)
            .with("count", stored.count);
    }

  private:
    struct Null {};
    friend void Append(std::string& text, Null) { text += "null"; }

    std::string& mText;
    std::size_t mLogLines = 0;
    std::size_t mProperties = 0;
    std::size_t mEepromReads = 0;
    std::size_t mDevices = 0;
    std::size_t mHandOvers = 0;
};

void AppendEvents(std::string& text, const std::vector<Event>& events) {
    EventLines lines(text);
    const char* separator = "";
    text += '[';
    for (const Event& event : events) {
        text += separator + Lead(2);
        std::visit(lines, event);
        separator = ",";
    }
    text += events.empty() ? "]" : Lead(1) + "]";
}

void AppendFiles(std::string& text, const std::vector<ChangedFile>& files) {
    const char* separator = "";
    text += '{';
    for (const ChangedFile& file : files) {
        text += separator + Lead(2);
        Append(text, file.path);
        text += ": ";
        Line(text).with("size", file.bytes.size()).with("mode", ModeText(file.mode)).with("hex", file.bytes);
        separator = ",";
    }
    text += files.empty() ? "}" : Lead(1) + "}";
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

std::string ReportText(const BootRecord& boot) {
    std::string text = "{";
    const auto member = [&](const char* key) -> std::string& {
        text += (text.size() == 1 ? "" : ",") + Lead(1) + "\"" + key + "\": ";
        return text;
    };
    if (boot.ordered) {
        Append(member("format"), 1);
    }
    Append(member("phone"), boot.phone);
    if (boot.plugin) {
        Append(member("plugin"), Json{{"path", boot.plugin->path}, {"buildId", boot.plugin->buildId}}, 1);
    }
    // A record without order is that of an older report, which says "exception" alone.
    if (boot.ended && (boot.ordered || boot.ended->how != Ended::How::Threw)) {
        Append(member("ended"), EndReport(*boot.ended), 1);
    }
    AppendLines(member("properties"), EventsOf<PropertySet>(boot), 1);
    AppendFiles(member("files"), boot.files);
    if (!boot.rewritten.empty()) {
        AppendFiles(member("rewritten"), boot.rewritten);
    }
    if (boot.foreignFiles > 0) {
        Append(member("foreignFiles"), boot.foreignFiles);
    }
    AppendLines(member("devices"), EventsOf<ProviderMerge>(boot), 1);
    AppendLines(member("thirdCalibration"), EventsOf<HandOver>(boot), 1);
    AppendLines(member("eepromReads"), EventsOf<EepromRead>(boot), 1);
    AppendLines(member("log"), EventsOf<LogLine>(boot), 1);
    if (boot.ended && boot.ended->how == Ended::How::Threw) {
        Append(member("exception"), boot.ended->what);
    }
    if (!boot.troubles.empty()) {
        AppendLines(member("troubles"), boot.troubles, 1);
    }
    if (boot.ordered) {
        AppendEvents(member("events"), boot.events);
    }
    if (!boot.description.empty()) {
        Append(member("description"),
               Json::parse(boot.description, nullptr, /*allow_exceptions=*/true, /*ignore_comments=*/true),
               1);
    }
    return text + "\n}\n";
}

}  // namespace

void WriteReport(std::ostream& out, const BootRecord& boot) {
    const std::string text = ReportText(boot);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

}  // namespace record
