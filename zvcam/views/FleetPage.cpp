#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "zvcam/views/FleetView.h"
#include "zvcam/views/Html.h"

namespace zvcam {

namespace {

using Kind = HtmlTable::Column::Kind;

Markup OrDash(const std::string& text) {
    return text.empty() ? Markup("-") : Markup(text);
}

Markup OrNothing(std::int64_t number) {
    return number == 0 ? Markup() : Markup(std::to_string(number));
}

Markup More(std::int64_t count, std::string_view view) {
    return count == 0 ? Markup()
                      : Paragraph("And " + std::to_string(count) +
                                  " more: " + Element("code", {}, "--csv " + std::string(view)));
}

Markup Examples(const PhoneGroup& group) {
    Markup markup;
    for (const std::string& example : group.examples) {
        markup += Element("div", {}, example);
    }
    return markup;
}

/// "7 with errors", judged where there are any.
Markup CountOf(std::int64_t count, const std::string& words, Verdict verdict) {
    const std::string text = std::to_string(count) + " " + words;
    return count == 0 ? Markup(text) : Judged(verdict, text);
}

Markup Lead(const FleetSummary& summary) {
    Markup sources;
    for (const FleetSummary::Source& source : summary.sources) {
        sources +=
            Paragraph("Of " + Element("code", {}, source.path) +
                      (source.shard.empty() ? "" : ", shard " + source.shard) +
                      (source.options.empty() ? Markup() : ", with " + Element("code", {}, source.options)));
    }
    return Paragraph(Counted(static_cast<std::size_t>(summary.phones), "phone") + ".") +
           Paragraph(CountOf(summary.withErrors, "with errors", Verdict::Bad) + ", " +
                     CountOf(summary.withWarnings, "more with warnings", Verdict::Doubtful) + ", " +
                     CountOf(summary.withNeither, "with neither", Verdict::Good) + ", " +
                     CountOf(summary.notReturned, "did not return", Verdict::Bad) + ", " +
                     std::to_string(summary.notBooted) + " not booted.") +
           sources;
}

Markup Endings(const FleetSummary& summary) {
    HtmlTable table("How the boots ended",
                    {{"ended"}, {"phones", Kind::Number}, {"reason"}, {"examples", Kind::Values}});
    table.searchable("ending").stacked();
    for (const FleetSummary::Ending& ending : summary.endings) {
        table.row({ending.ended, std::to_string(ending.group.phones), ending.reason, Examples(ending.group)});
    }
    return table.markup() + More(summary.endedOtherwise, "phones");
}

Markup Findings(const FleetSummary& summary) {
    HtmlTable table("Findings, with # for numbers and ids", {{"about"},
                                                             {"severity"},
                                                             {"finding"},
                                                             {"phones", Kind::Number},
                                                             {"by maker and layout", Kind::Values},
                                                             {"examples", Kind::Values}});
    table.searchable("finding").stacked();
    for (const FleetSummary::FindingGroup& finding : summary.findings) {
        Markup modules;
        for (const auto& module : finding.modules) {
            modules += Element(
                "div", {},
                OrDash(module.maker) + ", " + OrDash(module.layout) + ": " + std::to_string(module.phones));
        }
        table.row({finding.about,
                   Judged(finding.severity == "error" ? Verdict::Bad : Verdict::Doubtful, finding.severity),
                   finding.kind, std::to_string(finding.group.phones), modules, Examples(finding.group)});
    }
    return table.markup() + More(static_cast<std::int64_t>(summary.moreFindings), "common_findings");
}

Markup Modules(const FleetSummary& summary) {
    std::vector<HtmlTable::Column> columns = {{"module"},
                                              {"chip"},
                                              {"maker"},
                                              {"layout", Kind::Values},
                                              {"modules", Kind::Number},
                                              {"unreadable", Kind::Number},
                                              {"erased", Kind::Number},
                                              {"foreign layout", Kind::Number}};
    for (const std::string& range : summary.rangeNames) {
        columns.push_back({range + " bad", Kind::Number});
    }
    HtmlTable table("Modules by maker and layout", std::move(columns));
    table.searchable("module").stacked();
    for (const FleetSummary::ModuleKind& kind : summary.modules) {
        std::vector<Markup> cells = {kind.name,
                                     kind.chip.empty() ? Markup("not fitted") : Markup(kind.chip),
                                     OrDash(kind.maker),
                                     OrDash(kind.layout),
                                     std::to_string(kind.modules),
                                     OrNothing(kind.unreadable),
                                     OrNothing(kind.erased),
                                     OrNothing(kind.ofOtherModule)};
        for (const std::int64_t bad : kind.badRanges) {
            cells.push_back(OrNothing(bad));
        }
        table.row(cells);
    }
    return table.markup();
}

Markup Calibration(const FleetSummary& summary) {
    HtmlTable table("Where calibration came from", {{"of"}, {"source"}, {"phones", Kind::Number}});
    for (const FleetSummary::Calibration& calibration : summary.calibration) {
        table.row({calibration.what,
                   calibration.source.empty() ? Judged(Verdict::Bad, "none") : Markup(calibration.source),
                   std::to_string(calibration.phones)});
    }
    return table.markup();
}

Markup FuseIds(const FleetSummary& summary) {
    if (summary.repeatedFuseIds.empty()) {
        return Paragraph(Judged(Verdict::Good, "None occurs more than once."));
    }
    HtmlTable table(
        "Fuse ids that occur more than once",
        {{"module"}, {"fuse id", Kind::Code}, {"modules", Kind::Number}, {"examples", Kind::Values}});
    table.searchable("fuse id").stacked();
    for (const FleetSummary::RepeatedFuseId& repeated : summary.repeatedFuseIds) {
        table.row({repeated.module, repeated.fuseId, std::to_string(repeated.group.phones),
                   Examples(repeated.group)});
    }
    return table.markup() + More(summary.moreRepeatedFuseIds, "repeated_fuse_ids");
}

Markup ErrorLines(const FleetSummary& summary) {
    HtmlTable table("Error lines, but for those that every phone has",
                    {{"operation", Kind::Code}, {"text"}, {"phones", Kind::Number}, {"lines", Kind::Number}});
    table.searchable("error line").stacked();
    for (const FleetSummary::ErrorLine& line : summary.errorLines) {
        table.row(
            {OrDash(line.operation), line.text, std::to_string(line.phones), std::to_string(line.lines)});
    }
    return table.markup() + More(static_cast<std::int64_t>(summary.moreErrorLines), "common_error_lines");
}

}  // namespace

void WriteFleetPage(std::ostream& out, const std::string& database, const FleetSummary& summary) {
    WritePage(out, {.title = database,
                    .about = "zvcam fleet report",
                    .lead = Lead(summary),
                    .sections = {{"findings", "Findings", Findings(summary)},
                                 {"endings", "How they ended", Endings(summary)},
                                 {"modules", "Modules", Modules(summary)},
                                 {"calibration", "Calibration", Calibration(summary)},
                                 {"fuse-ids", "Repeated fuse ids", FuseIds(summary)},
                                 {"error-lines", "Error lines", ErrorLines(summary)}},
                    .kinds = {{"ending", "endings"},
                              {"finding", "findings"},
                              {"module", "modules"},
                              {"fuse id", "fuse ids"},
                              {"error line", "error lines"}}});
}

}  // namespace zvcam
