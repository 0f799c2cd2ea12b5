#include "zvcam/views/StreamsPicture.h"

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>
#include <vector>

#include "analysis/TagContents.h"
#include "tables/StreamFormats.h"
#include "zvcam/views/Svg.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using analysis::OfferedStream;

/// What the largest size fits into, in units of the picture.
constexpr double kMostWidth = 200;
constexpr double kMostHeight = 170;

/// Area, width and height.
using Size = std::tuple<double, std::int64_t, std::int64_t>;
Size SizeOf(const analysis::StreamRow& row) {
    return {analysis::AreaOf(row), row.width, row.height};
}

std::string SizeText(const Size& size) {
    return std::to_string(std::get<1>(size)) + "\u00D7" + std::to_string(std::get<2>(size));
}

bool IsInput(const analysis::StreamRow& row) {
    return row.direction == STREAM_INPUT;
}

/// "33.333 ms", with what a stall adds; "input".
std::string StreamText(const OfferedStream& stream) {
    if (IsInput(stream.row)) {
        return "input";
    }
    std::string text = stream.row.minDuration ? Milliseconds(*stream.row.minDuration) : "output";
    if (stream.row.stall.value_or(0) != 0) {
        text += " + " + Milliseconds(*stream.row.stall);
    }
    return text + (stream.again ? " again" : "");
}

Markup FormatPicture(std::int64_t format, const std::vector<const OfferedStream*>& streams,
                     const StreamScale& scale) {
    const double unit = std::min(kMostWidth / static_cast<double>(scale.width),
                                 kMostHeight / static_cast<double>(scale.height));
    const auto units = [=](std::int64_t pixels) { return std::max(0.0, static_cast<double>(pixels) * unit); };
    const double width = units(scale.width);
    const double height = units(scale.height);
    std::map<Size, const OfferedStream*, std::greater<>> sizes;
    for (const OfferedStream* const stream : streams) {
        const OfferedStream*& shown = sizes[SizeOf(stream->row)];
        shown = shown == nullptr || IsInput(shown->row) ? stream : shown;
    }
    Markup shapes = SvgRect(0, 0, width, height, "ground");
    for (const auto& [size, stream] : sizes) {
        shapes += SvgRect(0, height - units(stream->row.height), units(stream->row.width),
                          units(stream->row.height), IsInput(stream->row) ? "size input" : "size",
                          SizeText(size) + ", " + StreamText(*stream));
    }
    const std::string name = analysis::FormatName(format);
    return Element("figure", {},
                   SvgPicture("-1 -1 " + Units(width + 2) + " " + Units(height + 2),
                              Counted(sizes.size(), "size") + " of " + name + ", drawn to scale", shapes) +
                       Element("figcaption", {},
                               Element("b", {}, name) + " " + Counted(sizes.size(), "size") +
                                   ", the largest " + SizeText(sizes.begin()->first)));
}

Markup SizeTable(const std::map<std::int64_t, std::vector<const OfferedStream*>>& formats) {
    std::vector<HtmlTable::Column> columns = {{"size", HtmlTable::Column::Kind::Number}};
    std::map<Size, std::map<std::int64_t, std::string>, std::greater<>> rows;
    for (const auto& [format, streams] : formats) {
        columns.push_back({analysis::FormatName(format), HtmlTable::Column::Kind::Number});
        for (const OfferedStream* const stream : streams) {
            std::string& cell = rows[SizeOf(stream->row)][format];
            cell += (cell.empty() ? "" : ", ") + StreamText(*stream);
        }
    }
    HtmlTable table("Frame time, plus stall time, in ms", std::move(columns));
    for (auto& [size, cells] : rows) {
        std::vector<Markup> row = {SizeText(size)};
        for (const auto& [format, streams] : formats) {
            row.emplace_back(cells[format]);
        }
        table.row(row);
    }
    return table.markup();
}

}  // namespace

StreamScale ScaleOf(const std::vector<analysis::SharedStreams>& lists) {
    StreamScale scale;
    for (const analysis::SharedStreams& list : lists) {
        for (const OfferedStream& stream : list.streams) {
            scale.width = std::max(scale.width, stream.row.width);
            scale.height = std::max(scale.height, stream.row.height);
        }
    }
    return scale;
}

Markup StreamsPicture(const analysis::SharedStreams& list, const StreamScale& scale, const Markup& heading) {
    std::map<std::int64_t, std::vector<const OfferedStream*>> formats;
    for (const OfferedStream& stream : list.streams) {
        formats[stream.row.format].push_back(&stream);
    }
    Markup pictures;
    for (const auto& [format, streams] : formats) {
        pictures += FormatPicture(format, streams, scale);
    }
    return Element(
        "article", {},
        Element("h3", {}, heading) + Element("div", {{"class", "formats"}}, pictures) +
            Folded(Counted(list.streams.size(), "stream configuration") + " as a table", SizeTable(formats)));
}

}  // namespace zvcam
