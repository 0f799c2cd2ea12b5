#include "zvcam/views/RecordTables.h"

#include <algorithm>
#include <span>
#include <string>

#include "analysis/DeviceGroups.h"
#include "analysis/LogWords.h"
#include "formats/Hex.h"
#include "tables/PublishedProperties.h"
#include "tables/PublishedTags.h"
#include "zvcam/views/DiagnosisPage.h"
#include "zvcam/views/LogView.h"
#include "zvcam/views/MetadataView.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using Column = HtmlTable::Column;

/// A value that is longer than this is folded.
constexpr std::size_t kLongestLine = 160;
/// More lines are not for paper.
constexpr std::size_t kMostPrintedLines = 24;
/// Bytes of a file that are shown.
constexpr std::size_t kShownBytes = 4096;

std::string Title(const std::string& words, std::size_t count) {
    return words + " (" + (count == 0 ? "none" : std::to_string(count)) + ")";
}

/// A table, or nothing where it has no rows: the title says so.
PageSection Section(const std::string& id, const std::string& words, std::size_t count,
                    const HtmlTable& table) {
    return {id, Title(words, count), count == 0 ? Markup() : table.markup()};
}

Markup Values(const std::vector<std::string>& lines) {
    if (lines.empty()) {
        return "none";
    }
    const std::string first = formats::Shortened(lines[0], kLongestLine);
    if (lines.size() == 1 && first == lines[0]) {
        return first;
    }
    return Folded(lines.size() == 1 ? first : Counted(lines.size(), "line") + ": " + first + " ...",
                  Preformatted(lines), lines.size() > kMostPrintedLines);
}

PageSection Properties(const record::BootRecord& boot) {
    const auto properties = record::EventsOf<record::PropertySet>(boot);
    HtmlTable table("Properties in the order in which they were set",
                    {{"name", Column::Kind::Code}, {"value", Column::Kind::Values}, {"set by"}, {"result"}});
    table.searchable("property");
    for (const record::PropertySet* const set : properties) {
        const tables::PublishedProperty* const row = tables::FindPublishedProperty(set->name);
        table.row({set->name, set->value, row == nullptr ? "" : row->operation.name,
                   set->stored ? Markup() : Judged(Verdict::Bad, "refused")},
                  {{"class", set->stored ? "" : "error"}});
    }
    return Section("properties", "Properties", properties.size(), table);
}

std::vector<std::string> HexLines(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kBytesALine = 32;
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < std::min(bytes.size(), kShownBytes); at += kBytesALine) {
        lines.push_back(HexNumber(static_cast<std::uint32_t>(at)) + "  " +
                        formats::UpperHex(bytes.subspan(at, std::min(kBytesALine, bytes.size() - at))));
    }
    if (bytes.size() > kShownBytes) {
        lines.push_back("and " + Counted(bytes.size() - kShownBytes, "byte") + " more");
    }
    return lines;
}

PageSection Files(const record::BootRecord& boot) {
    HtmlTable table("Files that were written", {{"path", Column::Kind::Values},
                                                {"bytes", Column::Kind::Number},
                                                {"mode", Column::Kind::Code},
                                                {"content", Column::Kind::Values},
                                                {"result"}});
    table.searchable("file");
    const auto add = [&](const record::ChangedFile& file, const char* result) {
        const BlobGlance glance = GlanceAt(file.bytes);
        table.row({file.path, std::to_string(file.bytes.size()), ModeText(file.mode),
                   glance.whole ? Markup(glance.text)
                                : Folded(glance.text, Preformatted(HexLines(file.bytes)), true),
                   result});
    };
    for (const record::ChangedFile& file : boot.files) {
        add(file, "created or changed");
    }
    for (const record::ChangedFile& file : boot.rewritten) {
        add(file, "as before the boot");
    }
    return Section("files", "Files", boot.files.size() + boot.rewritten.size(), table);
}

PageSection Tags(const record::BootRecord& boot, const std::vector<analysis::Device>& devices) {
    const std::vector<analysis::SharedTag> tags = analysis::SharedTagsOf(boot);
    HtmlTable table("Tags by number; devices with the same values share a row",
                    {{"tag, its number and who stored it"},
                     {"devices"},
                     {"type", Column::Kind::Code},
                     {"values", Column::Kind::Values}});
    table.searchable("tag");
    for (const analysis::SharedTag& shared : tags) {
        const record::Tag& tag = *shared.tag;
        const tables::PublishedTag* const row = tables::FindPublishedTag(tag.tag);
        std::string kinds;
        for (const std::size_t merge : shared.merges) {
            if (merge < devices.size()) {
                kinds += (kinds.empty() ? "" : " ") + KindOf(devices[merge]);
            }
        }
        const std::string origin =
            HexNumber(tag.tag) + (row == nullptr ? "" : std::string(" by ") + row->operation.name);
        table.row(
            {Markup(row == nullptr ? "unknown" : row->name) + " " +
                 Element("span", {{"class", "quiet"}}, origin),
             DevicesText(shared.merges, boot, devices),
             std::string(tables::NameOf(tag.values.type())) + "[" + std::to_string(tag.values.count()) + "]",
             Values(ValueLines(tag))},
            {{"data-kind", kinds}});
    }
    return Section("tags", "Tags", tags.size(), table);
}

PageSection Reads(const record::BootRecord& boot) {
    const auto reads = record::EventsOf<record::EepromRead>(boot);
    const auto blocks = record::EventsOf<record::HandOver>(boot);
    HtmlTable table("Reads of modules' memories, and blocks handed to the third calibration service",
                    {{"what"}, {"bytes", Column::Kind::Number}, {"result", Column::Kind::Values}});
    table.searchable("read");
    for (const record::EepromRead* const read : reads) {
        const bool good = !read->read || *read->read == read->length;
        const std::string back = read->read ? std::to_string(*read->read) + " came back" : "";
        table.row({"read of chip " + HexNumber(read->sensorId) + ", device bit " +
                       HexNumber(read->deviceBit) + ", from offset " + std::to_string(read->offset),
                   std::to_string(read->length), good ? Markup(back) : Judged(Verdict::Bad, back)});
    }
    for (const record::HandOver* const handOver : blocks) {
        table.row({"hand-over", std::to_string(handOver->block.size()), BlobText(handOver->block)});
    }
    return Section("reads", "Reads and hand-overs", reads.size() + blocks.size(), table);
}

PageSection Log(const record::BootRecord& boot, const analysis::Course& course,
                const std::vector<analysis::Device>& devices) {
    const auto all = record::EventsOf<record::LogLine>(boot);
    const std::string tag = all.empty() ? "" : all[0]->tag;
    HtmlTable table("Log lines of " + tag + ", others with their tag; by the number of their event",
                    {{"event", Column::Kind::Number},
                     {"level"},
                     {"device"},
                     {"operation"},
                     {"message", Column::Kind::Values}});
    table.searchable("line");
    auto update = course.devices.begin();
    for (std::size_t i = 0; i < boot.events.size(); ++i) {
        const auto* const line = std::get_if<record::LogLine>(&boot.events[i]);
        while (update != course.devices.end() && i >= update->end) {
            ++update;
        }
        if (line == nullptr) {
            continue;
        }
        const bool error = analysis::IsError(*line);
        const bool everywhere = analysis::IsOnEveryPhone(*line);
        const analysis::Device* const device =
            update != course.devices.end() && i >= update->first
                ? &devices[static_cast<std::size_t>(update - course.devices.begin())]
                : nullptr;
        const std::string level(1, PriorityLetter(line->priority));
        std::string kinds = error ? "error" : "";
        kinds += device == nullptr ? "" : (kinds.empty() ? "" : " ") + KindOf(*device);
        table.row({std::to_string(i),
                   !error       ? Markup(level)
                   : everywhere ? Markup(level + " on every phone")
                                : Judged(Verdict::Bad, level),
                   device == nullptr ? "" : analysis::DeviceNumber(device->logicalIndex, device->memberId),
                   (line->tag == tag ? "" : line->tag + " ") + std::string(record::OperationOf(*line)),
                   std::string(record::TextOf(*line))},
                  {{"class", error && !everywhere ? "error" : ""}, {"data-kind", kinds}});
    }
    PageSection section = Section("log", "Log", all.size(), table);
    section.content =
        Element("p", {{"class", "only-print"}}, "On paper only the error lines of this phone.") +
        section.content;
    return section;
}

}  // namespace

std::vector<PageSection> RecordSections(const analysis::Boot& boot, const analysis::Course& course,
                                        const std::vector<analysis::Device>& devices) {
    return {Properties(boot.record), Files(boot.record), Tags(boot.record, devices), Reads(boot.record),
            Log(boot.record, course, devices)};
}

std::string DevicesText(const std::vector<std::size_t>& merges, const record::BootRecord& boot,
                        const std::vector<analysis::Device>& devices) {
    const auto all = record::EventsOf<record::ProviderMerge>(boot);
    if (merges.size() == all.size() && all.size() > 2) {
        return "all " + std::to_string(all.size());
    }
    std::string text;
    for (const std::size_t merge : merges) {
        text += text.empty() ? "" : ", ";
        text += merge < devices.size()
                    ? analysis::DeviceNumber(devices[merge].logicalIndex, devices[merge].memberId)
                    : "provider " + HexNumber(all[merge]->provider);
    }
    return text;
}

}  // namespace zvcam
