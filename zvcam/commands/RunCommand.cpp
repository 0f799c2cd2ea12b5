#include <memory>
#include <ostream>
#include <string>

#include "analysis/Diagnosis.h"
#include "record/Report.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Output.h"
#include "zvcam/views/DiagnosisView.h"

namespace zvcam {

namespace {

struct RunOptions {
    BootOptions boot;
    std::string json;
    bool all = false;
};

int Run(const RunOptions& options) {
    if (!options.json.empty()) {
        CheckIsNoInput(options.json, InputsOf(options.boot));
    }
    const analysis::Boot boot = Obtain(options.boot, /*forReport=*/!options.json.empty());
    const int status = ExitStatusOf(boot);
    if (!options.json.empty()) {
        WriteFile(options.json, [&](std::ostream& out) { record::WriteReport(out, boot.record); });
    }
    if (options.json != "-") {
        const analysis::Diagnosis diagnosis = analysis::Diagnose(boot);
        PrintOut([&](std::ostream& out) {
            (options.all ? PrintEverything : PrintDiagnosis)(out, boot, diagnosis, OutputStyle());
        });
    }
    return status;
}

}  // namespace

void AddRunCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<RunOptions>();
    CLI::App* const command =
        app.add_subcommand("run", "Boot a virtual phone and tell what became of it, the worst first");
    AddBootOptions(*command, options->boot);
    command
        ->add_option("--json", options->json,
                     "Write the complete report to this file; \"-\": print it instead of the diagnosis")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command->add_flag("--all", options->all, "Print everything that was published too");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
