#include "zvcam/views/StreamsView.h"

#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "analysis/TagContents.h"
#include "zvcam/views/MetadataView.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

std::vector<analysis::OfferedStream> StreamsOf(const analysis::Device& device,
                                               std::optional<std::int64_t> format) {
    if (device.metadata == nullptr) {
        return {};
    }
    std::vector<analysis::OfferedStream> streams = analysis::OfferedStreamsOf(*device.metadata);
    std::erase_if(streams, [=](const analysis::OfferedStream& stream) {
        return format && stream.row.format != *format;
    });
    return streams;
}

std::string SizeText(const analysis::StreamRow& row) {
    return std::to_string(row.width) + "x" + std::to_string(row.height);
}

std::string DurationText(const std::optional<std::int64_t>& nanoseconds) {
    return nanoseconds ? Milliseconds(*nanoseconds) : "-";
}

std::string DirectionOf(const analysis::StreamRow& row) {
    return row.direction ? analysis::DirectionName(*row.direction) : "-";
}

}  // namespace

void PrintStreams(std::ostream& out, const analysis::Device& device, std::optional<std::int64_t> format) {
    const std::vector<analysis::OfferedStream> streams = StreamsOf(device, format);
    out << DeviceText(device) << ": " << Counted(streams.size(), "stream configuration") << '\n';
    if (streams.empty()) {
        return;
    }
    Table table;
    table.row({"format", "size", "direction", "frame ms", "stall ms"});
    for (const analysis::OfferedStream& stream : streams) {
        table.row({analysis::FormatName(stream.row.format), SizeText(stream.row), DirectionOf(stream.row),
                   DurationText(stream.row.minDuration), DurationText(stream.row.stall),
                   stream.again ? "stands above too" : ""});
    }
    table.print(out, 2);
}

void PrintStreamOverview(std::ostream& out, const std::vector<analysis::Device>& devices,
                         std::optional<std::int64_t> format) {
    std::set<std::int64_t> formats;
    for (const analysis::Device& device : devices) {
        for (const analysis::OfferedStream& stream : StreamsOf(device, format)) {
            formats.insert(stream.row.format);
        }
    }
    Table table;
    std::vector<std::string>& heading = table.row({"device", "", "largest"});
    for (const std::int64_t each : formats) {
        heading.push_back(analysis::FormatName(each));
    }
    for (const analysis::Device& device : devices) {
        analysis::StreamRow largest;
        std::map<std::int64_t, std::size_t> counts;
        for (const analysis::OfferedStream& stream : StreamsOf(device, format)) {
            ++counts[stream.row.format];
            largest = analysis::AreaOf(stream.row) > analysis::AreaOf(largest) ? stream.row : largest;
        }
        std::vector<std::string>& row =
            table.row({analysis::DeviceNumber(device.logicalIndex, device.memberId), Printable(device.name),
                       counts.empty() ? "none" : SizeText(largest)});
        for (const std::int64_t each : formats) {
            row.push_back(std::to_string(counts[each]));
        }
    }
    table.print(out, 0);
}

void PrintStreamsAsCsv(std::ostream& out, const analysis::Device& device,
                       std::optional<std::int64_t> format) {
    for (const analysis::OfferedStream& stream : StreamsOf(device, format)) {
        const auto duration = [](const std::optional<std::int64_t>& nanoseconds) {
            return nanoseconds ? Milliseconds(*nanoseconds) : std::string();
        };
        out << device.logicalIndex << ',' << (device.memberId ? std::to_string(*device.memberId) : "") << ','
            << analysis::FormatName(stream.row.format) << ',' << stream.row.width << ',' << stream.row.height
            << ',' << DirectionOf(stream.row) << ',' << duration(stream.row.minDuration) << ','
            << duration(stream.row.stall) << ',' << (stream.again ? 1 : 0) << '\n';
    }
}

}  // namespace zvcam
