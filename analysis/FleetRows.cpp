#include "analysis/FleetRows.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

#include "analysis/Diagnosis.h"
#include "analysis/LogWords.h"
#include "record/EndingNames.h"
#include "tables/EepromLayouts.h"

namespace analysis {

namespace {

using enum FleetColumn::Type;
using Cells = std::vector<FleetCell>;

FleetCell NumberIf(bool known, std::int64_t number) {
    return known ? FleetCell(number) : FleetCell();
}

FleetCell TextOrNothing(std::string text) {
    return text.empty() ? FleetCell() : FleetCell(std::move(text));
}

constexpr std::array<FleetColumn, 15> kPhoneColumns = {{
    {"path", Text, "as the list or folder names it"},
    {"kind", Text, "`phone file` or `pulled folder`"},
    {"name", Text, "of the phone"},
    {"ended", Text,
     "`returned`, `threw`, `signal`, `exited`, `timeout`; `unread` for an entry that cannot be read, "
     "`failed` "
     "where this machine could not boot it"},
    {"reason", Text, "why, where the boot did not return"},
    {"step", Text, "the operation that logged last, where the boot did not return"},
    {"plugin", Text, "build id"},
    {"devices", Number, "camera devices and members that were updated"},
    {"properties_set", Number, "that the platform took"},
    {"log_lines", Number, "of every priority"},
    {"error_lines", Number, "of priority error, or worse"},
    {"usual_error_lines", Number, "those among them that every phone has"},
    {"errors", Number, "of the findings"},
    {"warnings", Number, "of the findings"},
    {"microseconds", Number, "that the boot took"},
}};

/// The checksummed ranges that a layout may have.
struct RangeColumn {
    std::string_view range;
    FleetColumn column;
};
constexpr const char* kRangeMeaning = "`ok`, `bad`, or `empty`: nothing but zeros";
constexpr std::array<RangeColumn, 5> kRangeColumns = {{
    {"AF", {"af", Text, kRangeMeaning}},
    {"AWB", {"awb", Text, kRangeMeaning}},
    {"LSC", {"lsc", Text, kRangeMeaning}},
    {"PDAF", {"pdaf", Text, kRangeMeaning}},
    {"OIS", {"ois", Text, kRangeMeaning}},
}};
static_assert(
    std::all_of(tables::kEepromLayouts.begin(), tables::kEepromLayouts.end(), [](const auto& layout) {
        const auto ranges = tables::RangesOf(layout);
        return std::all_of(ranges.begin(), ranges.end(), [](const SubModuleCheckSumDesc& range) {
            return std::any_of(kRangeColumns.begin(), kRangeColumns.end(),
                               [&](const RangeColumn& column) { return column.range == range.name; });
        });
    }));

constexpr std::array<FleetColumn, 18> kModuleColumns = {{
    {"role", Number, "as the plug-in numbers them: 0 is back main"},
    {"name", Text, "`back main`"},
    {"chip", Text, "none: not fitted"},
    {"reading", Text, "of its memory: `good`, `failed`; none where it was not tried"},
    {"bytes_read", Number, "that came back"},
    {"maker", Text, "none: one that nobody knows"},
    {"maker_id", Number, "the byte that names the maker"},
    {"layout", Text, "none: one that nobody knows"},
    {"fits", Number, "1 where the layout is one for this chip, 0 where it is another module's"},
    {"erased", Number, "the one byte that fills the whole memory"},
    kRangeColumns[0].column,
    kRangeColumns[1].column,
    kRangeColumns[2].column,
    kRangeColumns[3].column,
    kRangeColumns[4].column,
    {"fuse_id", Text, "as published, in hexadecimal"},
    {"qr_code", Text, "where its maker burned one"},
    {"focus", Text, "focus points, as published"},
}};

const char* RangeState(const CheckedRange& range) {
    return !range.finding.good() ? "bad" : range.empty ? "empty" : "ok";
}

FleetCell ReadingCell(Module::Reading reading) {
    switch (reading) {
        case Module::Reading::Good:
            return "good";
        case Module::Reading::Failed:
            return "failed";
        case Module::Reading::NotTried:
            break;
    }
    return {};
}

Cells ModuleCells(const Module& module) {
    static const ModuleMemory kNone;
    const ModuleMemory& memory = module.memory ? *module.memory : kNone;
    Cells cells = {
        std::int64_t{module.role},
        module.name,
        TextOrNothing(module.chip),
        ReadingCell(module.reading),
        NumberIf(module.read.has_value(), module.read.value_or(0)),
        TextOrNothing(memory.maker),
        NumberIf(module.memory.has_value(), memory.makerId),
        memory.layout == nullptr ? FleetCell() : FleetCell(memory.layout->eepromName),
        NumberIf(module.layoutOfThisChip.has_value(), module.layoutOfThisChip.value_or(false) ? 1 : 0),
        NumberIf(memory.erased.has_value(), memory.erased.value_or(0)),
    };
    for (const RangeColumn& column : kRangeColumns) {
        const auto range = std::find_if(
            memory.ranges.begin(), memory.ranges.end(),
            [&](const CheckedRange& candidate) { return candidate.finding.range.name == column.range; });
        cells.push_back(range == memory.ranges.end() ? FleetCell() : FleetCell(RangeState(*range)));
    }
    cells.insert(cells.end(), {TextOrNothing(module.fuseId), TextOrNothing(memory.qrCode),
                               TextOrNothing(module.focusPoints)});
    return cells;
}

constexpr std::array<FleetColumn, 5> kPairColumns = {{
    {"pair", Text, "`wide and ultra`"},
    {"source", Text, "`EEPROM`, `persist`, `golden`; none: nothing supplies a block"},
    {"file", Text, "that was taken"},
    {"block_size", Number, "of a persist file, bytes"},
    {"dump_failed", Number, "1 where the pair's dump file could not be opened"},
}};

Cells PairCells(const PairDecision& decision) {
    return {
        PairName(*decision.pair), TextOrNothing(SourceName(decision.source)), TextOrNothing(decision.path),
        NumberIf(decision.blockSize.has_value(), static_cast<std::int64_t>(decision.blockSize.value_or(0))),
        std::int64_t{decision.dumpFailed}};
}

constexpr std::array<FleetColumn, 5> kRefusalColumns = {{
    {"pair", Text, "`wide and ultra`"},
    {"candidate", Text, "a path on the phone, or `EEPROM`"},
    {"reason", Text, "why it did not serve"},
    {"kind", Text, "the reason with `#` for numbers and ids"},
    {"of_another_pair", Number, "1 for a sound file that was made for another pair"},
}};

Cells RefusalCells(const PairDecision& decision, const PassedOver& passed) {
    return {PairName(*decision.pair), passed.candidate, passed.reason, WithoutNumbers(passed.reason),
            std::int64_t{passed.ofAnotherPair}};
}

constexpr std::array<FleetColumn, 4> kStabiliserColumns = {{
    {"state", Text, "as published: `0`, `2` or `3`"},
    {"source", Text, "of the gains: `persist` or `EEPROM`"},
    {"reason", Text, "why not of the persist file"},
    {"parameters", Text, "as published: gain X, gain Y, third and fourth parameter"},
}};

Cells StabiliserCells(const StabiliserDecision& decision) {
    return {decision.state, SourceName(decision.source()), TextOrNothing(decision.reason),
            decision.parameters};
}

constexpr std::array<FleetColumn, 3> kPropertyColumns = {{
    {"name", Text, "of the property"},
    {"value", Text, "that it was set to"},
    {"stored", Number, "0 where the platform refused it"},
}};

Cells PropertyCells(const record::PropertySet& set) {
    return {set.name, set.value, std::int64_t{set.stored}};
}

constexpr std::array<FleetColumn, 4> kFindingColumns = {{
    {"severity", Text, "`error` or `warning`"},
    {"about", Text, "a module, a pair, `stabiliser`, devices, a property or a tag"},
    {"words", Text, "as `zvcam run` prints them"},
    {"kind", Text, "the words with `#` for numbers and ids"},
}};

Cells FindingCells(const Finding& finding) {
    return {finding.severity == Finding::Severity::Error ? "error" : "warning", finding.about, finding.words,
            WithoutNumbers(finding.words)};
}

constexpr std::array<FleetColumn, 4> kErrorLineColumns = {{
    {"operation", Text, "that logged it"},
    {"text", Text, "with `#` for numbers and ids"},
    {"lines", Number, "how often"},
    {"usual", Number, "1 for lines that every phone has"},
}};

/// Error lines that differ in their numbers alone.
struct ErrorLines {
    std::string_view operation;
    std::string text;
    bool usual = false;

    friend bool operator<(const ErrorLines& left, const ErrorLines& right) {
        return std::tie(left.operation, left.text, left.usual) <
               std::tie(right.operation, right.text, right.usual);
    }
};

constexpr std::array<FleetTable, 8> kTables = {{
    {"phones", "one row for each entry, whatever became of it", kPhoneColumns},
    {"modules", "the modules that the phone has room for", kModuleColumns},
    {"pairs", "where each camera pair's calibration block came from", kPairColumns},
    {"refusals", "what a pair's block did not come from, in the order in which it was tried",
     kRefusalColumns},
    {"stabiliser", "where its gains came from", kStabiliserColumns},
    {"properties", "every property that the plug-in set, in its order", kPropertyColumns},
    {"findings", "what is wrong with the phone, the worst first", kFindingColumns},
    {"error_lines", "what the plug-in logged as an error", kErrorLineColumns},
}};

enum Table : std::size_t {
    Phones,
    Modules,
    Pairs,
    Refusals,
    Stabiliser,
    Properties,
    Findings,
    ErrorLinesTable
};

Cells PhoneCells(const FleetEntry& entry, const Boot& boot, const Diagnosis& diagnosis) {
    const record::Ended ended = boot.record.ended.value_or(record::Ended());
    const auto count = [](std::size_t number) { return static_cast<std::int64_t>(number); };
    const auto countFindings = [&](Finding::Severity severity) {
        return static_cast<std::int64_t>(
            std::count_if(diagnosis.findings.begin(), diagnosis.findings.end(),
                          [=](const Finding& finding) { return finding.severity == severity; }));
    };
    return {entry.path,
            entry.pulledFolder ? "pulled folder" : "phone file",
            boot.record.phone,
            record::EndingName(ended.how),
            ended.returned() ? FleetCell() : FleetCell(record::EndText(ended)),
            TextOrNothing(ended.step),
            boot.record.plugin ? TextOrNothing(boot.record.plugin->buildId) : FleetCell(),
            count(diagnosis.devices.size()),
            count(diagnosis.storedProperties),
            count(diagnosis.logLines),
            count(diagnosis.errorLines),
            count(diagnosis.errorLinesOnEveryPhone),
            countFindings(Finding::Severity::Error),
            countFindings(Finding::Severity::Warning),
            entry.microseconds};
}

void AddErrorLines(const record::BootRecord& boot, std::vector<FleetRow>& rows) {
    std::map<ErrorLines, std::int64_t> counts;
    for (const record::Event& event : boot.events) {
        const auto* const line = std::get_if<record::LogLine>(&event);
        if (line != nullptr && IsError(*line)) {
            ++counts[{record::OperationOf(*line), WithoutNumbers(record::TextOf(*line)),
                      IsOnEveryPhone(*line)}];
        }
    }
    for (const auto& [lines, count] : counts) {
        rows.push_back(
            {ErrorLinesTable, {std::string(lines.operation), lines.text, count, std::int64_t{lines.usual}}});
    }
}

}  // namespace

std::span<const FleetTable> FleetTables() {
    return kTables;
}

std::vector<FleetRow> RowsOf(const FleetEntry& entry, const Boot& boot) {
    const Diagnosis diagnosis = Diagnose(boot);
    std::vector<FleetRow> rows;
    rows.push_back({Phones, PhoneCells(entry, boot, diagnosis)});
    for (const Module& module : diagnosis.modules) {
        rows.push_back({Modules, ModuleCells(module)});
    }
    for (const PairDecision& decision : diagnosis.pairs) {
        rows.push_back({Pairs, PairCells(decision)});
        for (const PassedOver& passed : decision.passedOver) {
            rows.push_back({Refusals, RefusalCells(decision, passed)});
        }
    }
    if (diagnosis.stabiliser) {
        rows.push_back({Stabiliser, StabiliserCells(*diagnosis.stabiliser)});
    }
    for (const record::PropertySet* const set : record::EventsOf<record::PropertySet>(boot.record)) {
        rows.push_back({Properties, PropertyCells(*set)});
    }
    for (const Finding& finding : diagnosis.findings) {
        rows.push_back({Findings, FindingCells(finding)});
    }
    AddErrorLines(boot.record, rows);
    return rows;
}

FleetRow RowOfNotBooted(const FleetEntry& entry, NotBooted why, std::string reason) {
    Cells cells(kPhoneColumns.size());
    cells[0] = entry.path;
    cells[1] = entry.pulledFolder ? "pulled folder" : "phone file";
    cells[3] = why == NotBooted::Unread ? "unread" : "failed";
    cells[4] = std::move(reason);
    return {Phones, std::move(cells)};
}

}  // namespace analysis
