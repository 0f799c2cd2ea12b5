#include "zvcam/fleet/Summary.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "analysis/LogWords.h"

namespace zvcam {

namespace {

/// How many of the phones that did not return are told apart by their reasons.
constexpr std::size_t kMostEndings = 20;

void ReadSources(Database& database, FleetSummary& summary) {
    Statement statement(database,
                        "SELECT source, shard, options FROM runs GROUP BY source, shard, options"
                        " ORDER BY min(id)");
    while (statement.step()) {
        summary.sources.push_back({statement.text(0), statement.text(1), statement.text(2)});
    }
}

void ReadEndings(Database& database, FleetSummary& summary) {
    std::map<std::pair<std::string, std::string>, PhoneGroup> groups;
    if (const std::int64_t returned =
            NumberOf(database, "SELECT count(*) FROM phones WHERE ended = 'returned'");
        returned > 0) {
        summary.endings.push_back({"returned", "", {.phones = returned, .examples = {}}});
    }
    Statement statement(database,
                        "SELECT ended, reason, path FROM phones WHERE ended <> 'returned' ORDER BY path");
    while (statement.step()) {
        PhoneGroup& group = groups[{statement.text(0), analysis::WithoutNumbers(statement.text(1))}];
        ++group.phones;
        if (group.examples.size() < kFleetExamples) {
            group.examples.push_back(statement.text(2));
        }
    }
    std::vector<FleetSummary::Ending> endings;
    endings.reserve(groups.size());
    for (auto& [ending, group] : groups) {
        endings.push_back({ending.first, ending.second, std::move(group)});
    }
    std::stable_sort(endings.begin(), endings.end(), [](const auto& left, const auto& right) {
        return left.group.phones > right.group.phones;
    });
    while (endings.size() > kMostEndings) {
        summary.endedOtherwise += endings.back().group.phones;
        endings.pop_back();
    }
    summary.endings.insert(summary.endings.end(), endings.begin(), endings.end());
}

std::vector<std::string> ExamplesOf(Statement& statement) {
    std::vector<std::string> examples;
    while (statement.step()) {
        examples.push_back(statement.text(0));
    }
    return examples;
}

void ReadFindings(Database& database, std::size_t most, FleetSummary& summary) {
    Statement groups(database, "SELECT severity, about, kind, phones FROM common_findings");
    Statement examples(database,
                       "SELECT DISTINCT p.path FROM findings f JOIN phones p ON p.id = f.phone"
                       " WHERE f.severity = ? AND f.about = ? AND f.kind = ? ORDER BY p.path LIMIT " +
                           std::to_string(kFleetExamples));
    while (groups.step()) {
        if (summary.findings.size() == most) {
            ++summary.moreFindings;
            continue;
        }
        FleetSummary::FindingGroup& finding = summary.findings.emplace_back();
        finding.severity = groups.text(0);
        finding.about = groups.text(1);
        finding.kind = groups.text(2);
        finding.group.phones = groups.number(3);
        for (const std::string* const text : {&finding.severity, &finding.about, &finding.kind}) {
            examples.bind(std::string_view(*text));
        }
        finding.group.examples = ExamplesOf(examples);
    }
    Statement modules(database,
                      "SELECT severity, about, kind, maker, layout, phones FROM findings_by_module");
    while (modules.step()) {
        // A memory that cannot be read tells neither.
        if (modules.isNull(3) && modules.isNull(4)) {
            continue;
        }
        const auto finding =
            std::find_if(summary.findings.begin(), summary.findings.end(), [&](const auto& candidate) {
                return candidate.severity == modules.text(0) && candidate.about == modules.text(1) &&
                       candidate.kind == modules.text(2);
            });
        if (finding != summary.findings.end()) {
            finding->modules.push_back({modules.text(3), modules.text(4), modules.number(5)});
        }
    }
}

void ReadModules(Database& database, FleetSummary& summary) {
    Statement statement(database,
                        "SELECT name, chip, maker, layout, modules, unreadable, erased, of_other_module,"
                        " af_bad, awb_bad, lsc_bad, pdaf_bad, ois_bad FROM module_kinds");
    summary.rangeNames = {"AF", "AWB", "LSC", "PDAF", "OIS"};
    while (statement.step()) {
        FleetSummary::ModuleKind& kind = summary.modules.emplace_back();
        int column = 0;
        for (std::string* const text : {&kind.name, &kind.chip, &kind.maker, &kind.layout}) {
            *text = statement.text(column++);
        }
        for (std::int64_t* const count :
             {&kind.modules, &kind.unreadable, &kind.erased, &kind.ofOtherModule}) {
            *count = statement.number(column++);
        }
        for (std::size_t i = 0; i < summary.rangeNames.size(); ++i) {
            kind.badRanges.push_back(statement.number(column++));
        }
    }
}

void ReadCalibration(Database& database, FleetSummary& summary) {
    Statement statement(database,
                        "SELECT pair, source, count(*) AS phones FROM pairs GROUP BY pair, source "
                        "UNION ALL SELECT 'stabiliser', source, count(*) FROM stabiliser GROUP BY source "
                        "ORDER BY 1, 3 DESC, 2");
    while (statement.step()) {
        summary.calibration.push_back({statement.text(0), statement.text(1), statement.number(2)});
    }
}

void ReadFuseIds(Database& database, std::size_t most, FleetSummary& summary) {
    Statement statement(database, "SELECT name, fuse_id, modules FROM repeated_fuse_ids");
    Statement examples(database,
                       "SELECT p.path FROM modules m JOIN phones p ON p.id = m.phone"
                       " WHERE m.name = ? AND m.fuse_id = ? ORDER BY p.path LIMIT " +
                           std::to_string(kFleetExamples));
    while (statement.step()) {
        if (summary.repeatedFuseIds.size() == most) {
            ++summary.moreRepeatedFuseIds;
            continue;
        }
        FleetSummary::RepeatedFuseId& repeated = summary.repeatedFuseIds.emplace_back();
        repeated.module = statement.text(0);
        repeated.fuseId = statement.text(1);
        repeated.group.phones = statement.number(2);
        examples.bind(std::string_view(repeated.module));
        examples.bind(std::string_view(repeated.fuseId));
        repeated.group.examples = ExamplesOf(examples);
    }
}

void ReadErrorLines(Database& database, std::size_t most, FleetSummary& summary) {
    Statement statement(database, "SELECT operation, text, lines, phones FROM common_error_lines");
    while (statement.step()) {
        if (summary.errorLines.size() == most) {
            ++summary.moreErrorLines;
            continue;
        }
        summary.errorLines.push_back(
            {statement.text(0), statement.text(1), statement.number(2), statement.number(3)});
    }
}

}  // namespace

FleetSummary SummaryOf(Database& database, std::size_t most) {
    FleetSummary summary;
    ReadSources(database, summary);
    summary.phones = NumberOf(database, "SELECT count(*) FROM phones");
    const auto count = [&](const char* condition) {
        return NumberOf(database, std::string("SELECT count(*) FROM phones WHERE ") + condition);
    };
    summary.withErrors = count("ended = 'returned' AND errors > 0");
    summary.withWarnings = count("ended = 'returned' AND errors = 0 AND warnings > 0");
    summary.withNeither = count("ended = 'returned' AND errors = 0 AND warnings = 0");
    summary.notReturned = count("ended NOT IN ('returned', 'unread', 'failed')");
    summary.notBooted = count("ended IN ('unread', 'failed')");
    ReadEndings(database, summary);
    ReadFindings(database, most, summary);
    ReadModules(database, summary);
    ReadCalibration(database, summary);
    ReadFuseIds(database, most, summary);
    ReadErrorLines(database, most, summary);
    return summary;
}

}  // namespace zvcam
