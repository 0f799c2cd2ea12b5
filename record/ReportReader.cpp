#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <concepts>
#include <csignal>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "record/Report.h"
#include "record/internal/JsonTokens.h"
#include "record/internal/ReportJson.h"

namespace record {

namespace {

/// Of a foreign text, so much is shown.
constexpr std::size_t kShownCharacters = 60;

/// Printable, on one line, and short.
std::string Shown(const Json& value) {
    std::string text = value.dump(-1, ' ', /*ensure_ascii=*/true, Json::error_handler_t::replace);
    if (text.size() > kShownCharacters) {
        text = text.substr(0, kShownCharacters) + "...";
    }
    return text;
}

/// Builds a document within bounds, and says where it ends being one.
class Builder : public nlohmann::json_sax<Json> {
  public:
    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(std::int64_t value) override { return add(value); }
    bool number_unsigned(std::uint64_t value) override { return add(value); }
    bool number_float(float value, const std::string&) override { return add(value); }
    bool string(std::string& value) override { return add(std::move(value)); }
    bool binary(Json::binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(Json::object()); }
    bool start_array(std::size_t) override { return open(Json::array()); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }
    bool key(std::string& name) override {
        mMember = &mOpen.back()->get_ref<Json::object_t&>()[name];
        return true;
    }
    bool parse_error(std::size_t position, const std::string&,
                     const nlohmann::detail::exception& error) override {
        constexpr int kNumberOverflow = 406;
        mError = error.id == kNumberOverflow ? "a number beyond all bounds" : "no JSON from here on";
        mPosition = position;
        return false;
    }

    /// @throws ReportError
    Json take(std::string_view text) {
        if (mTooDeep) {
            throw ReportError("/: expected at most " + std::to_string(kDeepestNesting) +
                              " lists and objects in each other, got more");
        }
        if (!mError.empty()) {
            throw ReportError(JsonPlace(text, mPosition == 0 ? 0 : mPosition - 1) +
                              ": expected a report, got " + mError);
        }
        return std::move(mRoot);
    }

  private:
    Json& place(Json value) {
        if (mOpen.empty()) {
            return mRoot = std::move(value);
        }
        if (mOpen.back()->is_object()) {
            return *mMember = std::move(value);
        }
        return mOpen.back()->emplace_back(std::move(value));
    }
    bool add(Json value) {
        place(std::move(value));
        return true;
    }
    bool open(Json value) {
        mTooDeep = mOpen.size() == kDeepestNesting;
        mOpen.push_back(&place(std::move(value)));
        return !mTooDeep;
    }
    bool close() {
        mOpen.pop_back();
        return true;
    }

    Json mRoot;
    std::vector<Json*> mOpen;
    Json* mMember = nullptr;  ///< whose value comes next
    std::string mError;
    std::size_t mPosition = 0;
    bool mTooDeep = false;
};

/// A value of the report that knows where it stands.
class Node {
  public:
    explicit Node(const Json& value) : mValue(value) {}
    Node(const Json& value, const Node& above, std::string key)
        : mValue(value), mAbove(&above), mKey(std::move(key)) {}

    [[noreturn]] void fail(const std::string& expected) const {
        const std::string got = mValue.is_object()  ? "an object"
                                : mValue.is_array() ? "a list"
                                                    : Shown(mValue);
        fail(expected, got);
    }
    [[noreturn]] void fail(const std::string& expected, const std::string& got) const {
        const std::string place = pointer();
        throw ReportError((place.empty() ? "/" : place) + ": expected " + expected + ", got " + got);
    }

    const Json& json() const { return mValue; }

    const std::string& text() const {
        if (!mValue.is_string()) {
            fail("a text");
        }
        return mValue.get_ref<const std::string&>();
    }

    bool flag() const {
        if (!mValue.is_boolean()) {
            fail("true or false");
        }
        return mValue.get<bool>();
    }

    template <std::integral Number>
    Number number(std::int64_t least = std::numeric_limits<Number>::min(),
                  std::int64_t most = std::numeric_limits<Number>::max()) const {
        const bool fits = mValue.is_number_unsigned()
                              ? std::in_range<std::int64_t>(mValue.get<std::uint64_t>())
                              : mValue.is_number_integer();
        if (!fits || mValue.get<std::int64_t>() < least || mValue.get<std::int64_t>() > most) {
            fail("a whole number from " + std::to_string(least) + " to " + std::to_string(most));
        }
        return static_cast<Number>(mValue.get<std::int64_t>());
    }

    /// A number as "0x91010021".
    std::uint32_t hexNumber() const {
        const std::string& digits = text();
        std::uint32_t number = 0;
        const char* const end = digits.data() + digits.size();
        if (!digits.starts_with("0x") || digits.size() < 3 ||
            std::from_chars(digits.data() + 2, end, number, 16) != std::from_chars_result{end, std::errc()}) {
            fail("a number of 32 bits such as \"0x91010021\"");
        }
        return number;
    }

    Blob bytes() const {
        const std::string& digits = text();
        Blob bytes(digits.size() / 2);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const char* const byte = digits.data() + 2 * i;
            if (std::from_chars(byte, byte + 2, bytes[i], 16).ptr != byte + 2) {
                bytes.clear();
            }
        }
        if (2 * bytes.size() != digits.size()) {
            fail("two hexadecimal digits a byte");
        }
        return bytes;
    }

    /// Calls `read` with each element of a list.
    template <typename Read>
    void each(const Read& read) const {
        if (!mValue.is_array()) {
            fail("a list");
        }
        std::size_t index = 0;
        for (const Json& element : mValue) {
            read(Node(element, *this, std::to_string(index++)));
        }
    }

    /// One of `names`; its position.
    std::size_t choice(std::span<const char* const> names) const {
        const auto found = std::find(names.begin(), names.end(), text());
        if (found == names.end()) {
            fail("one of the names that reports have here");
        }
        return static_cast<std::size_t>(found - names.begin());
    }

  private:
    std::string pointer() const {
        if (mAbove == nullptr) {
            return "";
        }
        std::string key = Shown(mKey);
        if (key.ends_with('"')) {
            key.pop_back();
        }
        std::string escaped;
        for (const char c : key.substr(1)) {
            escaped += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
        }
        return mAbove->pointer() + "/" + escaped;
    }

    const Json& mValue;
    const Node* mAbove = nullptr;
    std::string mKey;
};

/// The members of an object that has these keys only, each once.
class Object {
  public:
    Object(const Node& node, std::initializer_list<const char*> keys) : mNode(node) {
        if (!node.json().is_object()) {
            node.fail("an object");
        }
        mFound.reserve(keys.size());
        for (const auto& [key, value] : node.json().items()) {
            if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
                Node(value, node, key).fail("a key of a report", "an unknown one");
            }
            if (find(key.c_str()) != nullptr) {
                Node(value, node, key).fail("each key once", "it twice");
            }
            mFound.emplace_back(key, Node(value, node, key));
        }
    }

    /// Null where the object has no such member.
    const Node* find(std::string_view key) const {
        const auto found = std::find_if(mFound.begin(), mFound.end(),
                                        [key](const auto& member) { return member.first == key; });
        return found == mFound.end() ? nullptr : &found->second;
    }

    const Node& at(const char* key) const {
        const Node* const found = find(key);
        if (found == nullptr) {
            mNode.fail(std::string("a member \"") + key + "\"", "none");
        }
        return *found;
    }

  private:
    const Node& mNode;
    std::vector<std::pair<std::string, Node>> mFound;
};

LogLine ReadLogLine(const Node& node) {
    const Object line(node, {"priority", "tag", "message"});
    return {.priority = line.at("priority").number<int>(),
            .tag = line.at("tag").text(),
            .message = line.at("message").text()};
}

PropertySet ReadPropertySet(const Node& node) {
    const Object set(node, {"name", "value", "stored"});
    return {
        .name = set.at("name").text(), .value = set.at("value").text(), .stored = set.at("stored").flag()};
}

EepromRead ReadEepromRead(const Node& node) {
    const Object members(node, {"sensorId", "deviceBit", "offset", "length", "read"});
    EepromRead read{.sensorId = members.at("sensorId").number<std::uint32_t>(),
                    .deviceBit = members.at("deviceBit").number<std::uint32_t>(),
                    .offset = members.at("offset").number<std::uint32_t>(),
                    .length = members.at("length").number<std::uint32_t>(),
                    .read = {}};
    if (const Node* const came = members.find("read")) {
        read.read = came->number<std::uint32_t>();
    }
    return read;
}

HandOver ReadHandOver(const Node& node) {
    return {.block = Object(node, {"hex"}).at("hex").bytes()};
}

template <typename Item>
Item ReadItem(const Node& node) {
    if constexpr (std::is_same_v<Item, Blob>) {
        return node.bytes();
    } else if constexpr (std::is_same_v<Item, float>) {
        constexpr std::array<const char*, 3> kNoNumbers = {"NaN", "Infinity", "-Infinity"};
        constexpr float kInfinity = std::numeric_limits<float>::infinity();
        constexpr std::array<float, 3> kValues = {std::numeric_limits<float>::quiet_NaN(), kInfinity,
                                                  -kInfinity};
        return node.json().is_number() ? node.json().get<float>() : kValues[node.choice(kNoNumbers)];
    } else {
        return node.number<Item>();
    }
}

template <typename Item>
TagValues ReadItems(const Node& node) {
    std::vector<Item> items;
    node.each([&items](const Node& item) { items.push_back(ReadItem<Item>(item)); });
    return TagValues(std::move(items));
}

Tag ReadTag(const Node& node) {
    constexpr std::array kReaders = {
        ReadItems<std::int32_t>, ReadItems<std::int32_t>, ReadItems<std::int64_t>,
        ReadItems<float>,        ReadItems<std::uint8_t>, ReadItems<Blob>,
    };
    const Object members(node, {"tag", "name", "type", "values"});
    if (const Node* const name = members.find("name")) {
        name->text();
    }
    const std::size_t type = members.at("type").choice(kItemTypeNames);
    Tag tag{.tag = members.at("tag").hexNumber(), .values = kReaders[type](members.at("values"))};
    if (static_cast<std::size_t>(tag.values.type()) != type) {
        members.at("values").fail("no values where the type is \"none\", and values where it is another",
                                  std::to_string(tag.values.count()));
    }
    return tag;
}

ProviderMerge ReadMerge(const Node& node) {
    const Object members(node, {"provider", "metadata"});
    ProviderMerge merge{.provider = members.at("provider").hexNumber(), .metadata = {}};
    members.at("metadata").each([&merge](const Node& tagNode) {
        Tag tag = ReadTag(tagNode);
        if (!merge.metadata.empty() && merge.metadata.back().tag >= tag.tag) {
            tagNode.fail("tags in ascending order", "one below the tag before it");
        }
        merge.metadata.push_back(std::move(tag));
    });
    return merge;
}

std::vector<ChangedFile> ReadFiles(const Node& node) {
    if (!node.json().is_object()) {
        node.fail("an object");
    }
    std::vector<ChangedFile> files;
    for (const auto& [path, value] : node.json().items()) {
        const Node fileNode(value, node, path);
        const Object members(fileNode, {"size", "mode", "hex"});
        const Node& mode = members.at("mode");
        ChangedFile file{.path = path, .mode = 0, .bytes = members.at("hex").bytes()};
        const char* const end = mode.text().data() + mode.text().size();
        if (mode.text().size() != 4 || std::from_chars(mode.text().data(), end, file.mode, 8).ptr != end) {
            mode.fail("four octal digits");
        }
        if (members.at("size").number<std::int64_t>() != std::ssize(file.bytes)) {
            members.at("size").fail("the number of bytes, " + std::to_string(file.bytes.size()));
        }
        if (!files.empty() && files.back().path >= path) {
            fileNode.fail("files in ascending order", "one below the file before it");
        }
        files.push_back(std::move(file));
    }
    return files;
}

Ended ReadEnded(const Node& node) {
    const Object members(node, {"how", "signal", "status", "seconds", "step"});
    Ended ended;
    ended.how = static_cast<Ended::How>(members.at("how").choice(kEndings));
    if (ended.how == Ended::How::Signal) {
        const Node& name = members.at("signal");
        ended.signal = 1;
        while (SignalName(ended.signal) != name.text()) {
            if (++ended.signal >= NSIG) {
                name.fail("the name of a signal");
            }
        }
    }
    if (ended.how == Ended::How::Exited) {
        ended.exitStatus = members.at("status").number<int>();
    }
    if (ended.how == Ended::How::Timeout) {
        if (!members.at("seconds").json().is_number()) {
            members.at("seconds").fail("a number");
        }
        ended.seconds = members.at("seconds").json().get<float>();
    }
    if (const Node* const step = members.find("step")) {
        ended.step = step->text();
    }
    return ended;
}

/// An event that stands in no other list.
Event ReadInlineEvent(const Node& node) {
    const Json& json = node.json();
    if (json.contains("asked")) {
        const Object members(node, {"asked", "value"});
        PropertyAsked asked{.name = members.at("asked").text(), .value = {}};
        if (!members.at("value").json().is_null()) {
            asked.value = members.at("value").text();
        }
        return asked;
    }
    if (json.contains("opened")) {
        return PathOpened{.path = Object(node, {"opened"}).at("opened").text()};
    }
    if (json.contains("provider")) {
        return ProviderAsked{.provider = Object(node, {"provider"}).at("provider").hexNumber()};
    }
    if (json.contains("autofocusRead")) {
        const Object members(node, {"autofocusRead", "succeeded"});
        return AutofocusRead{.deviceBit = members.at("autofocusRead").number<std::uint32_t>(),
                             .succeeded = members.at("succeeded").flag()};
    }
    if (json.contains("stored")) {
        const Object members(node, {"stored", "result", "count"});
        return TagStored{.tag = members.at("stored").hexNumber(),
                         .result = members.at("result").number<int>(),
                         .count = members.at("count").number<std::uint32_t>()};
    }
    if (json.contains("query")) {
        const Object members(node, {"query", "about", "answer"});
        Asked asked{.query = static_cast<Query>(members.at("query").choice(kQueryNames)),
                    .about = members.at("about").number<std::int64_t>(),
                    .answer = {},
                    .text = {}};
        if (asked.query == Query::DeviceName) {
            asked.text = members.at("answer").text();
        } else {
            members.at("answer").each(
                [&asked](const Node& item) { asked.answer.push_back(item.number<std::int64_t>()); });
        }
        return asked;
    }
    node.fail("an event");
}

/// A list whose elements are events, and how far the list of all has come in it.
struct EventList {
    const char* kind;  ///< what the list of all calls its elements
    const Node& list;
    std::vector<Event> events = {};
    std::size_t next = 0;
};

template <typename Read>
EventList ReadList(const char* kind, const Node& node, const Read& read) {
    EventList list{.kind = kind, .list = node};
    node.each([&](const Node& element) { list.events.emplace_back(read(element)); });
    return list;
}

/// The events of all lists in the order that the list of all gives them.
std::vector<Event> InOrder(const Node& all, std::span<EventList> lists) {
    std::vector<Event> events;
    all.each([&](const Node& node) {
        if (!node.json().is_object() || node.json().empty()) {
            node.fail("an event");
        }
        const auto& [kind, value] = node.json().get_ref<const Json::object_t&>().front();
        const auto list = std::find_if(lists.begin(), lists.end(),
                                       [&kind = kind](const EventList& each) { return each.kind == kind; });
        if (list == lists.end()) {
            events.push_back(ReadInlineEvent(node));
            return;
        }
        const Object members(node, {list->kind});
        if (list->next == list->events.size()) {
            members.at(list->kind).fail("no further one of this kind");
        }
        members.at(list->kind)
            .number<std::size_t>(static_cast<std::int64_t>(list->next),
                                 static_cast<std::int64_t>(list->next));
        events.push_back(std::move(list->events[list->next++]));
    });
    for (const EventList& list : lists) {
        if (list.next != list.events.size()) {
            list.list.fail("each element among the events",
                           std::to_string(list.next) + " of " + std::to_string(list.events.size()));
        }
    }
    return events;
}

}  // namespace

BootRecord ReadReport(std::string_view text) {
    if (const auto excess = FindJsonExcess(text)) {
        throw ReportError(JsonPlace(text, excess->position) + ": expected " + excess->expected +
                          ", got more");
    }
    Builder builder;
    Json::sax_parse(text, &builder);
    const Json json = builder.take(text);
    const Node root(json);
    const Object report(
        root, {"format", "phone", "plugin", "ended", "properties", "files", "devices", "thirdCalibration",
               "eepromReads", "log", "exception", "troubles", "events", "description"});
    if (const Node* const format = report.find("format")) {
        format->number<int>(1, 1);
    }
    BootRecord boot;
    boot.phone = report.at("phone").text();
    if (const Node* const plugin = report.find("plugin")) {
        const Object members(*plugin, {"path", "buildId"});
        boot.plugin = {.path = members.at("path").text(), .buildId = members.at("buildId").text()};
    }
    std::array lists = {
        ReadList("property", report.at("properties"), ReadPropertySet),
        ReadList("device", report.at("devices"), ReadMerge),
        ReadList("thirdCalibration", report.at("thirdCalibration"), ReadHandOver),
        ReadList("eepromRead", report.at("eepromReads"), ReadEepromRead),
        ReadList("log", report.at("log"), ReadLogLine),
    };
    if (const Node* const events = report.find("events")) {
        boot.events = InOrder(*events, lists);
    } else {
        boot.ordered = false;
        for (EventList& list : lists) {
            std::move(list.events.begin(), list.events.end(), std::back_inserter(boot.events));
        }
    }
    boot.files = ReadFiles(report.at("files"));
    if (const Node* const troubles = report.find("troubles")) {
        troubles->each([&boot](const Node& trouble) { boot.troubles.push_back(trouble.text()); });
    }
    const Node* const exception = report.find("exception");
    if (const Node* const ended = report.find("ended")) {
        boot.ended = ReadEnded(*ended);
        if ((boot.ended->how == Ended::How::Threw) != (exception != nullptr)) {
            ended->fail("\"threw\" where there is an \"exception\", and there only");
        }
    } else if (exception != nullptr) {
        boot.ended = {.how = Ended::How::Threw, .what = {}, .step = LastOperation(boot.events)};
    }
    if (exception != nullptr) {
        boot.ended->what = exception->text();
    }
    if (const Node* const description = report.find("description")) {
        boot.description = description->json().dump();
    }
    return boot;
}

}  // namespace record
