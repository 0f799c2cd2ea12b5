#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "record/EndingNames.h"
#include "record/Report.h"
#include "record/internal/ReportEvents.h"
#include "record/internal/ReportNode.h"
#include "record/internal/ReportParser.h"

namespace record {

namespace {

std::vector<ChangedFile> ReadFiles(const ReportNode& node) {
    if (!node.json().is_object()) {
        node.fail("an object");
    }
    std::vector<ChangedFile> files;
    for (const auto& [path, value] : node.json().items()) {
        const ReportNode fileNode(value, node, path);
        const ReportObject members(fileNode, {"size", "mode", "hex"});
        const ReportNode& mode = members.at("mode");
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

Ended ReadEnded(const ReportNode& node) {
    const ReportObject members(node, {"how", "signal", "status", "seconds", "step"});
    Ended ended;
    ended.how = static_cast<Ended::How>(members.at("how").choice(kEndingNames));
    if (ended.how == Ended::How::Signal) {
        const ReportNode& name = members.at("signal");
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
    if (const ReportNode* const step = members.find("step")) {
        ended.step = step->text();
    }
    return ended;
}

/// A list whose elements are events, and how far the list of all has come in it.
struct EventList {
    const char* kind;  ///< what the list of all calls its elements
    const ReportNode& list;
    std::vector<Event> events = {};
    std::size_t next = 0;
};

template <typename Read>
EventList ReadList(const char* kind, const ReportNode& node, const Read& read) {
    EventList list{.kind = kind, .list = node};
    node.each([&](const ReportNode& element) { list.events.emplace_back(read(element)); });
    return list;
}

/// The events of all lists in the order that the list of all gives them.
std::vector<Event> InOrder(const ReportNode& all, std::span<EventList> lists) {
    std::vector<Event> events;
    all.each([&](const ReportNode& node) {
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
        const ReportObject members(node, {list->kind});
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
    const Json json = ParseReport(text);
    const ReportNode root(json);
    const ReportObject report(root, {"format", "phone", "plugin", "ended", "properties", "files", "rewritten",
                                     "foreignFiles", "devices", "thirdCalibration", "eepromReads", "log",
                                     "exception", "troubles", "events", "description"});
    if (const ReportNode* const format = report.find("format")) {
        format->number<int>(1, 1);
    }
    BootRecord boot;
    boot.phone = report.at("phone").text();
    if (const ReportNode* const plugin = report.find("plugin")) {
        const ReportObject members(*plugin, {"path", "buildId"});
        boot.plugin = {.path = members.at("path").text(), .buildId = members.at("buildId").text()};
    }
    std::array lists = {
        ReadList("property", report.at("properties"), ReadPropertySet),
        ReadList("device", report.at("devices"), ReadProviderMerge),
        ReadList("thirdCalibration", report.at("thirdCalibration"), ReadHandOver),
        ReadList("eepromRead", report.at("eepromReads"), ReadEepromRead),
        ReadList("log", report.at("log"), ReadLogLine),
    };
    if (const ReportNode* const events = report.find("events")) {
        boot.events = InOrder(*events, lists);
    } else {
        boot.ordered = false;
        for (EventList& list : lists) {
            std::move(list.events.begin(), list.events.end(), std::back_inserter(boot.events));
        }
    }
    boot.files = ReadFiles(report.at("files"));
    if (const ReportNode* const rewritten = report.find("rewritten")) {
        boot.rewritten = ReadFiles(*rewritten);
    }
    if (const ReportNode* const foreign = report.find("foreignFiles")) {
        boot.foreignFiles = foreign->number<std::uint64_t>(0, std::numeric_limits<std::int64_t>::max());
    }
    if (const ReportNode* const troubles = report.find("troubles")) {
        troubles->each([&boot](const ReportNode& trouble) { boot.troubles.push_back(trouble.text()); });
    }
    const ReportNode* const exception = report.find("exception");
    if (const ReportNode* const ended = report.find("ended")) {
        boot.ended = ReadEnded(*ended);
        if ((boot.ended->how == Ended::How::Threw) != (exception != nullptr)) {
            ended->fail(R"("threw" where there is an "exception", and there only)");
        }
    } else if (exception != nullptr) {
        boot.ended = {.how = Ended::How::Threw, .what = {}, .step = LastOperation(boot.events)};
    }
    if (exception != nullptr) {
        boot.ended->what = exception->text();
    }
    if (const ReportNode* const description = report.find("description")) {
        boot.description = description->json().dump();
    }
    return boot;
}

}  // namespace record
