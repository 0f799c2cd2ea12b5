#include "zvcam/views/EepromPicture.h"

#include <algorithm>
#include <array>
#include <vector>

#include "analysis/MemoryMap.h"
#include "formats/Hex.h"
#include "zvcam/views/Svg.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using analysis::MarkedRange;
using Kind = MarkedRange::Kind;
using State = MarkedRange::State;

/// Bytes a row, and rows.
constexpr std::size_t kSide = 128;
/// A byte's cell is filled by its value in so many shades; 0 is left blank.
constexpr std::size_t kShades = 15;
/// Between the names beside the picture, in cells, so that no line of text covers another.
constexpr double kNameHeight = 6.5;

std::string Offset(std::size_t offset) {
    return formats::HexNumber(offset, 4);
}

std::string Place(const MarkedRange& range) {
    return range.first == range.last ? Offset(range.first)
                                     : Offset(range.first) + " to " + Offset(range.last);
}

/// The cells as one path a shade, neighbours in one stroke.
Markup Cells(formats::ImageBytes image) {
    const auto shadeOf = [](std::uint8_t byte) { return (byte * kShades + 254) / 255; };
    std::array<std::string, kShades + 1> paths;
    for (std::size_t first = 0; first < image.size();) {
        std::size_t end = first + 1;
        while (end < image.size() && end % kSide != 0 && shadeOf(image[end]) == shadeOf(image[first])) {
            ++end;
        }
        paths[shadeOf(image[first])] += "M" + std::to_string(first % kSide) + " " +
                                        std::to_string(first / kSide) + "h" + std::to_string(end - first);
        first = end;
    }
    Markup cells;
    for (std::size_t shade = 1; shade <= kShades; ++shade) {
        if (!paths[shade].empty()) {
            const double opacity = 0.12 + 0.88 * static_cast<double>(shade) / kShades;
            cells += Element("path", {{"d", paths[shade]}, {"stroke-opacity", Units(opacity)}});
        }
    }
    return Element("g", {{"class", "cells"}, {"transform", "translate(0 .5)"}}, cells);
}

/// Around the cells of a range: a rectangle, or the steps of one that begins and ends within rows.
std::string Outline(std::size_t first, std::size_t last) {
    const auto at = [](std::size_t number) { return std::to_string(number); };
    const std::size_t top = first / kSide;
    const std::size_t bottom = last / kSide;
    const std::size_t left = first % kSide;
    const std::size_t right = last % kSide + 1;
    const auto box = [&](std::size_t x, std::size_t y, std::size_t end) {
        return "M" + at(x) + " " + at(y) + "H" + at(end) + "v1H" + at(x) + "z";
    };
    if (top == bottom) {
        return box(left, top, right);
    }
    if (top + 1 == bottom && right <= left) {
        return box(left, top, kSide) + box(0, bottom, right);
    }
    return "M" + at(left) + " " + at(top) + "H128V" + at(bottom) + "H" + at(right) + "v1H0V" + at(top + 1) +
           "H" + at(left) + "z";
}

const char* StyleOf(const MarkedRange& range) {
    switch (range.state) {
        case State::Good:
            return "mark good";
        case State::Empty:
            return "mark empty";
        case State::Bad:
            return "mark bad";
        case State::Unchecked:
            break;
    }
    switch (range.kind) {
        case Kind::FuseId:
            return "mark fuse";
        case Kind::QRCode:
            return "mark code";
        case Kind::Stabiliser:
            return "mark stabiliser";
        default:
            return "mark";
    }
}

Markup StateText(State state) {
    switch (state) {
        case State::Good:
            return Judged(Verdict::Good, "good");
        case State::Empty:
            return Judged(Verdict::Doubtful, "empty");
        case State::Bad:
            return Judged(Verdict::Bad, "BAD");
        case State::Unchecked:
            break;
    }
    return {};
}

/// The name of a range beside the picture; those that say little each share one. Empty for a checksum byte,
/// which its range speaks for.
std::string NameBeside(const MarkedRange& range) {
    switch (range.kind) {
        case Kind::Identity:
            return "identity";
        case Kind::FuseId:
            return "fuse id";
        case Kind::QRCode:
            return "QR code";
        case Kind::Stabiliser:
            return "stabiliser";
        case Kind::CheckSum:
            return "";
        case Kind::CalibrationBlock:
            return "calibration";
        case Kind::Checked:
            break;
    }
    return range.name;
}

/// The names at the right edge, led to the rows where their ranges begin.
Markup Names(const std::vector<MarkedRange>& ranges) {
    struct Name {
        std::string text;
        State state;
        double row;
        double y = 0;
    };
    std::vector<Name> names;
    for (const MarkedRange& range : ranges) {
        const std::string text = NameBeside(range);
        const std::size_t row = range.first / kSide;
        if (!text.empty() &&
            (range.kind == Kind::Checked ||
             std::none_of(names.begin(), names.end(), [&](const Name& name) { return name.text == text; }))) {
            names.push_back({text, range.state, static_cast<double>(row) + 0.5});
        }
    }
    // Downwards as far as they need, then upwards as far as the picture reaches.
    double least = 2;
    for (Name& name : names) {
        name.y = std::max(name.row, least);
        least = name.y + kNameHeight;
    }
    double most = kSide - 2;
    for (std::size_t i = names.size(); i-- > 0;) {
        names[i].y = std::min(names[i].y, most);
        most = names[i].y - kNameHeight;
    }
    Markup drawn;
    for (const Name& name : names) {
        const char* const style = name.state == State::Bad     ? "bad"
                                  : name.state == State::Empty ? "doubtful"
                                  : name.state == State::Good  ? "good"
                                                               : "";
        const std::string words = name.state == State::Bad     ? "\u2717 " + name.text + " BAD"
                                  : name.state == State::Empty ? name.text + " empty"
                                  : name.state == State::Good  ? "\u2713 " + name.text
                                                               : name.text;
        drawn += SvgPath("M128.5 " + Units(name.row) + "L132 " + Units(name.y) + "h1.5", "leader");
        drawn += SvgText(134.5, name.y + 1.7, words, style);
    }
    return drawn;
}

Markup Scale() {
    Markup scale;
    for (std::size_t row = 0; row < kSide; row += 16) {
        scale += SvgText(-1.5, static_cast<double>(row) + 2.6, Offset(row * kSide), "offset");
    }
    return scale;
}

Markup Picture(const analysis::Module& module, const std::vector<MarkedRange>& ranges) {
    Markup outlines;
    for (const MarkedRange& range : ranges) {
        outlines += Element(
            "path", {{"d", Outline(range.first, range.last)}, {"class", StyleOf(range)}},
            Title(range.name + ", " + Place(range) + (range.value.empty() ? "" : ": " + range.value)));
    }
    return SvgPicture("-17 -1 191 130",
                      "The bytes of " + module.name + "'s memory; the table beside it names its ranges",
                      Scale() + SvgRect(0, 0, kSide, kSide, "ground") + Cells(module.image) + outlines +
                          Element("g", {{"class", "names"}}, Names(ranges)) + SvgRect(0, 0, 1, 1, "cursor"));
}

Markup RangeTable(const analysis::Module& module, const std::vector<MarkedRange>& ranges) {
    HtmlTable table("What the plug-in reads of " + module.name, {{"bytes", HtmlTable::Column::Kind::Code},
                                                                 {"what"},
                                                                 {"says", HtmlTable::Column::Kind::Values},
                                                                 {""}});
    for (const MarkedRange& range : ranges) {
        const std::string target = "#byte=" + IdOf(module.name) + ":" + Offset(range.first).substr(2);
        table.row({Element("span", {{"class", "nowrap"}}, Link(target, Place(range))), range.name,
                   range.value, StateText(range.state)},
                  {{"data-first", std::to_string(range.first)},
                   {"data-last", std::to_string(range.last)},
                   {"data-name", range.name},
                   {"class", range.state == State::Bad ? "error" : ""}});
    }
    return table.markup();
}

}  // namespace

std::string EepromPictureId(const analysis::Module& module) {
    return "eeprom-" + IdOf(module.name);
}

Markup EepromPicture(const analysis::Module& module) {
    const std::vector<MarkedRange> ranges =
        analysis::MarkedRangesOf(module.image, module.memory->layout, module.role);
    const std::string layout =
        module.memory->layout == nullptr ? "no known layout" : module.memory->layout->eepromName;
    return Element(
        "article", {{"id", EepromPictureId(module)}, {"class", "memory"}},
        Element("h3", {}, module.name + ", " + module.chip + ", " + layout) +
            Element("figure",
                    {{"data-module", IdOf(module.name)}, {"data-bytes", formats::UpperHex(module.image)}},
                    Element("div", {{"class", "picture"}}, Picture(module, ranges)) +
                        Element("figcaption", {},
                                Element("output", {{"class", "byte code"}, {"aria-hidden", "true"}}) +
                                    Element("span", {},
                                            "One cell a byte, 128 a row, the stronger the greater; 0x00 is "
                                            "blank."))) +
            RangeTable(module, ranges));
}

}  // namespace zvcam
