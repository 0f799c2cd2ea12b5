#include <algorithm>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/FleetCommands.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/fleet/FleetDatabase.h"
#include "zvcam/fleet/Summary.h"
#include "zvcam/views/FleetView.h"

namespace zvcam {

namespace {

/// What a person reads; all of it is in the tables.
constexpr std::size_t kMostInReport = 20;
constexpr std::size_t kMostOnPage = 500;

struct FleetReportOptions {
    std::string database;
    std::string html;
    std::string csv;
};

void PrintCsv(Database& database, const std::string& name) {
    const std::vector<std::string> names = FleetTableNames();
    if (std::find(names.begin(), names.end(), name) == names.end()) {
        std::string list;
        for (const std::string& each : names) {
            list += (list.empty() ? "" : ", ") + each;
        }
        throw std::runtime_error("no table is called \"" + Printable(name) + "\"; there are " + list);
    }
    PrintOut([&](std::ostream& out) {
        ReadTable(database, name, [&](const std::vector<std::string>& cells) { PrintCsvRow(out, cells); });
    });
    database.checkUnwritten();
}

FleetSummary WholeSummaryOf(Database& database, std::size_t most) {
    FleetSummary summary = SummaryOf(database, most);
    database.checkUnwritten();
    return summary;
}

int Run(const FleetReportOptions& options) {
    Database database = OpenFleet(options.database);
    CheckIsNoInput(options.html, {options.database});
    if (!options.csv.empty()) {
        PrintCsv(database, options.csv);
    }
    if (!options.html.empty()) {
        const FleetSummary summary = WholeSummaryOf(database, kMostOnPage);
        WriteFile(options.html, [&](std::ostream& out) { WriteFleetPage(out, options.database, summary); });
    }
    if (options.csv.empty() && options.html != "-") {
        const FleetSummary summary = WholeSummaryOf(database, kMostInReport);
        PrintOut([&](std::ostream& out) { PrintFleet(out, options.database, summary, OutputStyle()); });
    }
    return kExitSuccess;
}

}  // namespace

void AddFleetReportCommand(CLI::App& fleet, std::function<int()>& chosen) {
    const auto options = std::make_shared<FleetReportOptions>();
    CLI::App* const command = fleet.add_subcommand("report", "Tell what the phones of a database share");
    command->add_option("DB", options->database, "A database of `zvcam fleet run`")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    CLI::Option* const html =
        command->add_option("--html", options->html, "Write the report as a page too; \"-\": instead")
            ->type_name("FILE")
            ->check(CheckName);
    command->add_option("--csv", options->csv, "Print this table or view instead, comma-separated")
        ->type_name("NAME")
        ->check(CheckName)
        ->excludes(html);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
