#include "zvcam/views/MetadataView.h"

#include <ostream>
#include <type_traits>

#include "analysis/TagContents.h"
#include "tables/PublishedTags.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

std::string RowText(const analysis::StreamRow& row) {
    std::string text =
        analysis::FormatName(row.format) + " " + std::to_string(row.width) + "x" + std::to_string(row.height);
    if (row.direction) {
        text += " " + analysis::DirectionName(*row.direction);
    }
    if (row.minDuration) {
        text += " frame " + Milliseconds(*row.minDuration) + " ms";
    }
    if (row.stall) {
        text += " stall " + Milliseconds(*row.stall) + " ms";
    }
    return text;
}

std::string ScaleText(const formats::ZoomScaleRecord& record) {
    std::string text = "type " + std::to_string(record.type) + ":";
    for (std::size_t i = 0; i < record.count && i < formats::kZoomScaleCapacity; ++i) {
        text +=
            (i == 0 ? " " : ", ") + FloatText(record.ratios[i]) + "x at " + FloatText(record.positions[i]);
    }
    return text;
}

std::string FakeSatText(const formats::FakeSatSize& size) {
    return "type " + std::to_string(size.type) + ": " + std::to_string(size.width) + "x" +
           std::to_string(size.height) + " from " + FloatText(size.zoomStart) + "x to " +
           FloatText(size.zoomStop) + "x";
}

template <typename Item>
std::string ItemText(const Item& item) {
    if constexpr (std::is_same_v<Item, record::Blob>) {
        return BlobText(item);
    } else if constexpr (std::is_same_v<Item, float>) {
        return FloatText(item);
    } else {
        return std::to_string(item);
    }
}

/// Values on a line of their kind, as Android's dump has them.
template <typename Item>
constexpr std::size_t ValuesALine() {
    return std::is_same_v<Item, std::uint8_t>   ? 16
           : std::is_same_v<Item, float>        ? 8
           : std::is_same_v<Item, std::int64_t> ? 2
           : std::is_same_v<Item, record::Blob> ? 1
                                                : 4;
}

std::vector<std::string> PlainLines(const record::TagValues& values) {
    return values.visit([](const auto& items) {
        using Item = std::remove_cvref_t<decltype(items[0])>;
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (i % ValuesALine<Item>() == 0) {
                lines.emplace_back();
            }
            lines.back() += (lines.back().empty() ? "" : " ") + ItemText(items[i]);
        }
        return lines;
    });
}

/// The records of a blob whose layout is known; empty for any other tag.
std::vector<std::string> DecodedLines(const record::Tag& tag) {
    std::vector<std::string> lines;
    if (const auto rows = analysis::StreamRowsOf(tag)) {
        for (const analysis::StreamRow& row : *rows) {
            lines.push_back(RowText(row));
        }
    }
    for (const formats::ZoomScaleRecord& record : analysis::ZoomScalesOf(tag)) {
        lines.push_back(ScaleText(record));
    }
    for (const formats::FakeSatSize& size : analysis::FakeSatSizesOf(tag)) {
        lines.push_back(FakeSatText(size));
    }
    if (const auto payload = analysis::SatPayloadOf(tag)) {
        lines.push_back("master role " + std::to_string(payload->header.masterRole()) + ", slave role " +
                        std::to_string(payload->header.slaveRole()) + ", length " +
                        std::to_string(payload->header.length) + ", block of " + BlobText(payload->block));
    }
    if (const std::string name = analysis::CalibrationFileNameOf(tag); !name.empty()) {
        lines.push_back("\"" + Printable(name) + "\"");
    }
    return lines;
}

void PrintTags(std::ostream& out, const record::TagSet& metadata, const std::set<std::uint32_t>& only) {
    for (const record::Tag& tag : metadata) {
        if (only.empty() || only.contains(tag.tag)) {
            PrintTag(out, tag);
        }
    }
}

}  // namespace

std::string DeviceText(const analysis::Device& device) {
    const std::string text = "device " + analysis::DeviceNumber(device.logicalIndex, device.memberId);
    const std::string role = device.role ? "role " + std::to_string(*device.role) : "no role";
    return text + " (" + (device.name.empty() ? role : Printable(device.name) + ", " + role) + ")";
}

std::vector<std::string> ValueLines(const record::Tag& tag) {
    std::vector<std::string> lines = DecodedLines(tag);
    return lines.empty() ? PlainLines(tag.values) : lines;
}

void PrintTag(std::ostream& out, const record::Tag& tag) {
    const tables::PublishedTag* const row = tables::FindPublishedTag(tag.tag);
    out << "    " << (row == nullptr ? "(unknown)" : row->name) << " (" << HexNumber(tag.tag)
        << "): " << tables::NameOf(tag.values.type()) << '[' << tag.values.count() << "]\n";
    for (const std::string& line : ValueLines(tag)) {
        out << "      [" << line << "]\n";
    }
}

void PrintDevice(std::ostream& out, const analysis::Device& device, const std::set<std::uint32_t>& only) {
    out << "== " << DeviceText(device) << ", provider " << HexNumber(device.provider) << ": ";
    if (device.metadata == nullptr) {
        out << "nothing was merged, the boot ended before\n";
        return;
    }
    out << Counted(device.metadata->size(), "tag") << '\n';
    PrintTags(out, *device.metadata, only);
}

void PrintProvider(std::ostream& out, std::uint32_t provider, const record::TagSet& metadata,
                   const std::set<std::uint32_t>& only) {
    out << "== provider " << HexNumber(provider) << ": " << Counted(metadata.size(), "tag") << '\n';
    PrintTags(out, metadata, only);
}

}  // namespace zvcam
