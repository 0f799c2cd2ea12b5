#include "record/Report.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "formats/Hex.h"
#include "record/EndingNames.h"
#include "record/internal/ReportJson.h"
#include "tables/PublishedTags.h"

namespace record {

namespace {

std::string Scalar(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void Put(std::string& out, std::string_view text) {
    // Nearly every text is its own JSON.
    const bool plain = std::all_of(text.begin(), text.end(),
                                   [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; });
    if (plain) {
        out.append(1, '"').append(text) += '"';
    } else {
        out += Scalar(Json(text));
    }
}
void Put(std::string& out, const char* text) {
    Put(out, std::string_view(text));
}
void Put(std::string& out, const std::string& text) {
    Put(out, std::string_view(text));
}
void Put(std::string& out, std::nullptr_t) {
    out += "null";
}
void Put(std::string& out, bool flag) {
    out += flag ? "true" : "false";
}
void Put(std::string& out, std::integral auto number) {
    std::array<char, 24> digits;
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}
void Put(std::string& out, float number) {
    if (std::isnan(number)) {
        Put(out, "NaN");
    } else if (std::isinf(number)) {
        Put(out, number > 0 ? "Infinity" : "-Infinity");
    } else {
        out += Scalar(number);
    }
}
void Put(std::string& out, const Blob& bytes) {
    Put(out, formats::UpperHex(bytes));
}
template <typename Item>
void Put(std::string& out, std::span<const Item> items) {
    out += '[';
    const char* separator = "";
    for (const Item& item : items) {
        out += separator;
        Put(out, item);
        separator = ", ";
    }
    out += ']';
}
void Put(std::string& out, const TagValues& values) {
    values.visit([&out](const auto& items) { Put(out, items); });
}

/// An object on one line.
class Object {
  public:
    explicit Object(std::string& out) : mOut(out) { mOut += '{'; }
    ~Object() { mOut += '}'; }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    template <typename Value>
    Object& with(std::string_view key, const Value& value) {
        mOut += mSeparator;
        Put(mOut, key);
        mOut += ": ";
        Put(mOut, value);
        mSeparator = ", ";
        return *this;
    }

  private:
    std::string& mOut;
    const char* mSeparator = "";
};

/// A list or an object with one element a line.
class Lines {
  public:
    /// @param depth of the lines: lists and objects that they stand in.
    explicit Lines(std::size_t depth) : mIndent("\n" + std::string(2 * depth, ' ')) {}

    /// Where the next element is to be written.
    std::string& next() {
        mText += mCount++ == 0 ? mIndent : "," + mIndent;
        return mText;
    }
    std::string& next(std::string_view key) {
        Put(next(), key);
        return mText += ": ";
    }
    std::size_t count() const { return mCount; }

    /// Writes them between brackets.
    void putTo(std::string& out, std::string_view brackets) const {
        out.append(1, brackets[0]) += mText;
        out.append(mCount == 0 ? "" : mIndent.substr(0, mIndent.size() - 2)) += brackets[1];
    }

  private:
    std::string mIndent;
    std::string mText;
    std::size_t mCount = 0;
};

void PutTag(std::string& out, const Tag& tag) {
    Object object(out);
    object.with("tag", formats::HexNumber(tag.tag));
    if (const tables::PublishedTag* known = tables::FindPublishedTag(tag.tag)) {
        object.with("name", known->name);
    }
    object.with("type", tables::NameOf(tag.values.type())).with("values", tag.values);
}

void PutEnd(std::string& out, const Ended& ended) {
    Lines lines(2);
    Put(lines.next("how"), EndingName(ended.how));
    switch (ended.how) {
        case Ended::How::Signal:
            Put(lines.next("signal"), SignalName(ended.signal));
            break;
        case Ended::How::Exited:
            Put(lines.next("status"), ended.exitStatus);
            break;
        case Ended::How::Timeout:
            Put(lines.next("seconds"), static_cast<float>(ended.seconds));
            break;
        case Ended::How::Returned:
        case Ended::How::Threw:
            break;
    }
    if (!ended.step.empty()) {
        Put(lines.next("step"), ended.step);
    }
    lines.putTo(out, "{}");
}

void PutFiles(std::string& out, const std::vector<ChangedFile>& files) {
    Lines lines(2);
    for (const ChangedFile& file : files) {
        Object(lines.next(file.path))
            .with("size", file.bytes.size())
            .with("mode", ModeText(file.mode))
            .with("hex", file.bytes);
    }
    lines.putTo(out, "{}");
}

/// Puts each event into the list of its kind, where it has one, and into the list of all.
class Lists {
  public:
    void add(const Event& event) {
        std::visit([this](const auto& of) { take(of); }, event);
    }

    Lines log{2};
    Lines properties{2};
    Lines devices{2};
    Lines thirdCalibration{2};
    Lines eepromReads{2};
    Lines events{2};

  private:
    void take(const LogLine& line) {
        Object(pointTo("log", log))
            .with("priority", line.priority)
            .with("tag", line.tag)
            .with("message", line.message);
    }
    void take(const PropertySet& set) {
        Object(pointTo("property", properties))
            .with("name", set.name)
            .with("value", set.value)
            .with("stored", set.stored);
    }
    void take(const EepromRead& read) {
        Object object(pointTo("eepromRead", eepromReads));
        object.with("sensorId", read.sensorId)
            .with("deviceBit", read.deviceBit)
            .with("offset", read.offset)
            .with("length", read.length);
        if (read.read) {
            object.with("read", *read.read);
        }
    }
    void take(const ProviderMerge& merge) {
        std::string& out = pointTo("device", devices);
        if (merge.metadata.empty()) {
            Object(out).with("provider", formats::HexNumber(merge.provider)).with("metadata", TagValues());
            return;
        }
        Lines tags(4);
        for (const Tag& tag : merge.metadata) {
            PutTag(tags.next(), tag);
        }
        Lines members(3);
        Put(members.next("provider"), formats::HexNumber(merge.provider));
        tags.putTo(members.next("metadata"), "[]");
        members.putTo(out, "{}");
    }
    void take(const HandOver& handOver) {
        Object(pointTo("thirdCalibration", thirdCalibration)).with("hex", handOver.block);
    }
    void take(const PropertyAsked& asked) {
        Object object(events.next());
        object.with("asked", asked.name);
        if (asked.value) {
            object.with("value", *asked.value);
        } else {
            object.with("value", nullptr);
        }
    }
    void take(const AutofocusRead& read) {
        Object(events.next()).with("autofocusRead", read.deviceBit).with("succeeded", read.succeeded);
    }
    void take(const PathOpened& opened) { Object(events.next()).with("opened", opened.path); }
    void take(const Asked& asked) {
        Object object(events.next());
        object.with("query", kQueryNames[static_cast<std::size_t>(asked.query)]).with("about", asked.about);
        if (asked.query == Query::DeviceName) {
            object.with("answer", asked.text);
        } else {
            object.with("answer", std::span<const std::int64_t>(asked.answer));
        }
    }
    void take(const ProviderAsked& asked) {
        Object(events.next()).with("provider", formats::HexNumber(asked.provider));
    }
    void take(const TagStored& stored) {
        Object(events.next())
            .with("stored", formats::HexNumber(stored.tag))
            .with("result", stored.result)
            .with("count", stored.count);
    }

    /// Where the next element of a list is to be written, to which the list of all points.
    std::string& pointTo(const char* kind, Lines& list) {
        Object(events.next()).with(kind, list.count());
        return list.next();
    }
};

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

/// Writes one element a line down to what fits on one.
void Write(std::string& out, const Json& value, int depth) {
    if (!value.is_structured() || value.empty()) {
        out += Scalar(value);
        return;
    }
    const bool split = depth < 2 || Height(value) > 2;
    const std::string lead = split ? "\n" + std::string(2 * static_cast<std::size_t>(depth) + 2, ' ') : "";
    const std::string next = split ? "," + lead : ", ";
    const char* separator = lead.c_str();
    out += value.is_object() ? '{' : '[';
    for (const auto& [key, element] : value.items()) {
        out += separator;
        if (value.is_object()) {
            Put(out, key);
            out += ": ";
        }
        Write(out, element, depth + 1);
        separator = next.c_str();
    }
    if (split) {
        out += lead.substr(0, lead.size() - 2);
    }
    out += value.is_object() ? '}' : ']';
}

}  // namespace

void WriteReport(std::ostream& out, const BootRecord& boot) {
    Lists lists;
    for (const Event& event : boot.events) {
        lists.add(event);
    }
    Lines report(1);
    if (boot.ordered) {
        Put(report.next("format"), 1);
    }
    Put(report.next("phone"), boot.phone);
    if (boot.plugin) {
        Lines plugin(2);
        Put(plugin.next("path"), boot.plugin->path);
        Put(plugin.next("buildId"), boot.plugin->buildId);
        plugin.putTo(report.next("plugin"), "{}");
    }
    // A record without order is that of an older report, which says "exception" alone.
    if (boot.ended && (boot.ordered || boot.ended->how != Ended::How::Threw)) {
        PutEnd(report.next("ended"), *boot.ended);
    }
    lists.properties.putTo(report.next("properties"), "[]");
    PutFiles(report.next("files"), boot.files);
    if (!boot.rewritten.empty()) {
        PutFiles(report.next("rewritten"), boot.rewritten);
    }
    if (boot.foreignFiles > 0) {
        Put(report.next("foreignFiles"), boot.foreignFiles);
    }
    lists.devices.putTo(report.next("devices"), "[]");
    lists.thirdCalibration.putTo(report.next("thirdCalibration"), "[]");
    lists.eepromReads.putTo(report.next("eepromReads"), "[]");
    lists.log.putTo(report.next("log"), "[]");
    if (boot.ended && boot.ended->how == Ended::How::Threw) {
        Put(report.next("exception"), boot.ended->what);
    }
    if (!boot.troubles.empty()) {
        Lines troubles(2);
        for (const std::string& trouble : boot.troubles) {
            Put(troubles.next(), trouble);
        }
        troubles.putTo(report.next("troubles"), "[]");
    }
    if (boot.ordered) {
        lists.events.putTo(report.next("events"), "[]");
    }
    if (!boot.description.empty()) {
        const Json description = Json::parse(boot.description, nullptr, /*allow_exceptions=*/true,
                                             /*ignore_comments=*/true);
        Write(report.next("description"), description, 1);
    }
    std::string text;
    report.putTo(text, "{}");
    out << text << '\n';
}

}  // namespace record
