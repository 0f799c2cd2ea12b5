#include "zvcam/views/InfluencePage.h"

#include <algorithm>
#include <string>
#include <vector>

#include "zvcam/views/Html.h"
#include "zvcam/views/InfluenceView.h"

namespace zvcam {

namespace {

using analysis::Influence;
using analysis::Input;
using analysis::InputInfluence;
using analysis::Range;

/// Bytes a row of a picture.
constexpr std::size_t kRow = 128;

/// How strongly a range is drawn: what few bytes do, what many have in common, what shows in the log alone.
const char* Shade(const Influence& influence, const Range& range) {
    if (!ReachesPublished(influence.sets[range.effects])) {
        return "0.15";
    }
    return range.tried > 1 ? "0.45" : "0.9";
}

Markup Rectangle(std::size_t first, std::size_t columns, std::size_t rows) {
    return Element("rect", {{"x", std::to_string(first % kRow)},
                            {"y", std::to_string(first / kRow)},
                            {"width", std::to_string(columns)},
                            {"height", std::to_string(rows)}});
}

/// The cells of a stretch: what is left of its first row, whole rows, the beginning of its last.
Markup Cells(analysis::Stretch bytes) {
    Markup cells;
    if (const std::size_t column = bytes.first % kRow; column != 0) {
        const std::size_t count = std::min(bytes.count, kRow - column);
        cells += Rectangle(bytes.first, count, 1);
        bytes = {bytes.first + count, bytes.count - count};
    }
    if (const std::size_t rows = bytes.count / kRow; rows > 0) {
        cells += Rectangle(bytes.first, kRow, rows);
        bytes = {bytes.first + rows * kRow, bytes.count % kRow};
    }
    if (bytes.count > 0) {
        cells += Rectangle(bytes.first, bytes.count, 1);
    }
    return cells;
}

/// What of the published is reached; where nothing is, what logs otherwise.
std::string Reached(const analysis::Effects& effects) {
    const bool published = ReachesPublished(effects);
    return effects.empty() ? "nothing"
                           : (published ? "" : "the log alone: ") + Listed(EffectTexts(effects, !published));
}

Markup Picture(const Influence& influence, const InputInfluence& of) {
    const std::size_t rows = (of.input.size + kRow - 1) / kRow;
    Markup shapes = Element(
        "rect", {{"class", "ground"}, {"width", std::to_string(kRow)}, {"height", std::to_string(rows)}});
    for (const Range& range : of.ranges) {
        if (range.effects != 0) {
            shapes += Element(
                "g", {{"fill", "currentColor"}, {"fill-opacity", Shade(influence, range)}},
                Element("title", {}, RangeText(range) + ": " + Reached(influence.sets[range.effects])) +
                    Cells(range.bytes));
        }
    }
    return Element("figure", {},
                   Element("svg",
                           {{"viewBox", "0 0 " + std::to_string(kRow) + " " + std::to_string(rows)},
                            {"role", "img"},
                            {"aria-label", "The bytes of " + of.input.name + "; the table names them"}},
                           shapes));
}

Markup Ranges(const Influence& influence, const InputInfluence& of) {
    using Kind = HtmlTable::Column::Kind;
    HtmlTable table("What " + of.input.name + " reaches",
                    {{"bytes", Kind::Code}, {"count", Kind::Number}, {"what depends on them", Kind::Values}});
    table.searchable("range").stacked();
    if (of.without) {
        table.row({of.input.kind == Input::Kind::File ? "without it" : "other values", "",
                   Reached(influence.sets[*of.without])});
    }
    for (const Range& range : PublishedRanges(influence, of)) {
        table.row({range.open || range.effects == 0 ? StretchText(range.bytes) : RangeText(range),
                   std::to_string(range.bytes.count),
                   range.open ? "not found out" : Reached(influence.sets[range.effects])});
    }
    return table.markup();
}

}  // namespace

void WriteInfluencePage(std::ostream& out, const Influence& influence) {
    Page page{.title = influence.phone,
              .about = "zvcam influence",
              .lead = Element("p", {{"class", "lead"}},
                              "What decides what is published, found by " + Counted(influence.boots, "boot") +
                                  " with something changed each time."),
              .sections = {},
              .kinds = {{"range", "ranges"}}};
    page.lead += Paragraph("In the pictures a cell is a byte, a row " + std::to_string(kRow) +
                           " of them. Strong: what a few bytes do; medium: what many have in common; faint: "
                           "the log alone; empty: nothing.");
    if (const std::string note = StepNote(influence); !note.empty()) {
        page.lead += Paragraph(note);
    }
    if (!influence.complete) {
        page.lead += Paragraph(Judged(Verdict::Bad, "Incomplete: the search was stopped."));
    }
    for (const InputInfluence& of : influence.inputs) {
        const Markup picture = of.input.size == 0 ? Markup() : Picture(influence, of);
        page.sections.push_back({.id = IdOf(of.input.name),
                                 .title = of.input.name,
                                 .content = Element("div", {{"class", of.input.size == 0 ? "" : "memory"}},
                                                    picture + Ranges(influence, of))});
    }
    WritePage(out, page);
}

}  // namespace zvcam
