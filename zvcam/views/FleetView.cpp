#include "zvcam/views/FleetView.h"

#include <array>
#include <cstdio>
#include <ostream>

#include "zvcam/fleet/Csv.h"

namespace zvcam {

namespace {

/// "1.2%" of a fleet; a share that would round to nothing is "<0.1%".
std::string Share(std::int64_t phones, std::int64_t all) {
    const double percent = all == 0 ? 0 : 100.0 * static_cast<double>(phones) / static_cast<double>(all);
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), percent > 0 && percent < 0.05 ? "<0.1%%" : "%.1f%%", percent);
    return text.data();
}

std::string Phones(std::int64_t count) {
    return Counted(static_cast<std::size_t>(count), "phone");
}

std::string Examples(const PhoneGroup& group) {
    std::string text;
    for (const std::string& example : group.examples) {
        text += (text.empty() ? "" : ", ") + Printable(example);
    }
    return static_cast<std::int64_t>(group.examples.size()) < group.phones ? text + ", ..." : text;
}

std::string OrDash(const std::string& text) {
    return text.empty() ? "-" : Printable(text);
}

std::string OrNothing(std::int64_t number) {
    return number == 0 ? "" : std::to_string(number);
}

void PrintHead(std::ostream& out, const std::string& database, const FleetSummary& summary,
               const Style& style) {
    out << style.bold("Fleet " + Printable(database)) << ": " << Phones(summary.phones) << ", "
        << summary.withErrors << " with errors, " << summary.withWarnings << " more with warnings, "
        << summary.withNeither << " with neither";
    if (summary.notReturned > 0) {
        out << ", " << summary.notReturned << " did not return";
    }
    if (summary.notBooted > 0) {
        out << ", " << summary.notBooted << " not booted";
    }
    out << '\n';
    for (const FleetSummary::Source& source : summary.sources) {
        out << "  of " << Printable(source.path)
            << (source.shard.empty() ? "" : ", shard " + Printable(source.shard))
            << (source.options.empty() ? "" : ", with " + Printable(source.options)) << '\n';
    }
}

void PrintEndings(std::ostream& out, const FleetSummary& summary, const Style& style) {
    out << style.bold("How they ended") << '\n';
    Table table;
    for (const FleetSummary::Ending& ending : summary.endings) {
        auto& row = table.row({std::to_string(ending.group.phones), Printable(ending.ended)});
        if (!ending.reason.empty()) {
            row.push_back(Printable(ending.reason));
            table.row({"", "", Examples(ending.group)});
        }
    }
    if (summary.endedOtherwise > 0) {
        table.row({std::to_string(summary.endedOtherwise), "for other reasons: --csv phones"});
    }
    table.print(out, 2);
}

void PrintFindings(std::ostream& out, const FleetSummary& summary, const Style& style) {
    out << style.bold("Findings") << " (phones, # for numbers and ids)\n";
    Table table;
    for (const FleetSummary::FindingGroup& finding : summary.findings) {
        const bool error = finding.severity == "error";
        table.row({std::to_string(finding.group.phones), Share(finding.group.phones, summary.phones),
                   error ? style.bad("error") : style.doubtful("warning"),
                   Printable(finding.about) + ": " + Printable(finding.kind)});
        for (const auto& module : finding.modules) {
            table.row(
                {"", "", "",
                 OrDash(module.maker) + ", " + OrDash(module.layout) + ": " + std::to_string(module.phones)});
        }
        table.row({"", "", "", Examples(finding.group)});
    }
    table.print(out, 2);
    if (summary.findings.empty()) {
        out << "  none\n";
    }
    if (summary.moreFindings > 0) {
        out << "  and " << summary.moreFindings << " more kinds: --csv common_findings\n";
    }
}

void PrintModules(std::ostream& out, const FleetSummary& summary, const Style& style) {
    out << style.bold("Modules by maker and layout") << " (bad checksums by range)\n";
    Table table;
    std::vector<std::string> heading = {"module",  "chip",       "maker",  "layout",
                                        "modules", "unreadable", "erased", "foreign layout"};
    heading.insert(heading.end(), summary.rangeNames.begin(), summary.rangeNames.end());
    table.row(std::move(heading));
    for (const FleetSummary::ModuleKind& kind : summary.modules) {
        auto& row =
            table.row({Printable(kind.name), kind.chip.empty() ? "not fitted" : Printable(kind.chip),
                       OrDash(kind.maker), OrDash(kind.layout), std::to_string(kind.modules),
                       OrNothing(kind.unreadable), OrNothing(kind.erased), OrNothing(kind.ofOtherModule)});
        for (const std::int64_t bad : kind.badRanges) {
            row.push_back(OrNothing(bad));
        }
    }
    table.print(out, 2);
}

void PrintCalibration(std::ostream& out, const FleetSummary& summary, const Style& style) {
    out << style.bold("Calibration") << '\n';
    Table table;
    for (const FleetSummary::Calibration& calibration : summary.calibration) {
        table.row({Printable(calibration.what), calibration.source.empty() ? "none" : calibration.source,
                   std::to_string(calibration.phones)});
    }
    table.print(out, 2);
}

void PrintFuseIds(std::ostream& out, const FleetSummary& summary, const Style& style) {
    const std::int64_t count =
        static_cast<std::int64_t>(summary.repeatedFuseIds.size()) + summary.moreRepeatedFuseIds;
    out << style.bold("Fuse ids that occur more than once") << ": " << count << '\n';
    Table table;
    for (const FleetSummary::RepeatedFuseId& repeated : summary.repeatedFuseIds) {
        table.row({std::to_string(repeated.group.phones), Printable(repeated.module),
                   Printable(repeated.fuseId), Examples(repeated.group)});
    }
    table.print(out, 2);
    if (summary.moreRepeatedFuseIds > 0) {
        out << "  and " << summary.moreRepeatedFuseIds << " more: --csv repeated_fuse_ids\n";
    }
}

void PrintErrorLines(std::ostream& out, const FleetSummary& summary, const Style& style) {
    out << style.bold("Error lines") << " (those that every phone has left out)\n";
    Table table;
    if (!summary.errorLines.empty()) {
        table.row({"phones", "lines", "operation", "text"});
    }
    for (const FleetSummary::ErrorLine& line : summary.errorLines) {
        table.row({std::to_string(line.phones), std::to_string(line.lines), OrDash(line.operation),
                   Printable(line.text)});
    }
    table.print(out, 2);
    if (summary.moreErrorLines > 0) {
        out << "  and " << summary.moreErrorLines << " more: --csv common_error_lines\n";
    }
}

}  // namespace

void PrintFleetRun(std::ostream& out, const std::string& database, const FleetRun& run) {
    const std::size_t booted = run.entries - run.done - run.failed;
    out << Counted(booted, "phone");
    if (booted > 0) {
        std::array<char, 80> speed;
        const bool isShort = run.seconds < 1;
        std::snprintf(speed.data(), speed.size(),
                      isShort ? " in %.0f ms, %.0f a second" : " in %.1f s, %.0f a second",
                      isShort ? run.seconds * 1000 : run.seconds, static_cast<double>(booted) / run.seconds);
        out << speed.data();
    }
    if (run.done > 0) {
        out << "; " << run.done << (run.done == 1 ? " was" : " were") << " done before";
    }
    if (run.repeated > 0) {
        out << "; repeated in the list: " << run.repeated;
    }
    if (run.unread > 0) {
        out << "; " << run.unread << " cannot be read";
    }
    if (run.notReturned > 0) {
        out << "; " << run.notReturned << " did not return";
    }
    out << ".\n`zvcam fleet report " << Printable(database) << "` tells what they share.\n";
}

void PrintFleet(std::ostream& out, const std::string& database, const FleetSummary& summary,
                const Style& style) {
    PrintHead(out, database, summary, style);
    PrintEndings(out, summary, style);
    PrintFindings(out, summary, style);
    PrintModules(out, summary, style);
    PrintCalibration(out, summary, style);
    PrintFuseIds(out, summary, style);
    PrintErrorLines(out, summary, style);
}

void PrintCsvRow(std::ostream& out, const std::vector<std::string>& cells) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        out << (i == 0 ? "" : ",") << CsvCell(cells[i]);
    }
    out << '\n';
}

}  // namespace zvcam
