#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

#include "analysis/Diagnosis.h"
#include "record/Report.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/BootPage.h"
#include "zvcam/views/DiagnosisView.h"

namespace zvcam {

namespace {

struct RunOptions {
    BootOptions boot;
    std::string json;
    std::string html;
    bool all = false;
};

/// The files that the run reads, where an output is to replace a file.
std::vector<std::string> InputsAtRisk(const RunOptions& options) {
    std::error_code none;
    if (!std::filesystem::is_regular_file(options.json, none) &&
        !std::filesystem::is_regular_file(options.html, none)) {
        return {};
    }
    const std::vector<std::filesystem::path> inputs = InputsOf(options.boot);
    return {inputs.begin(), inputs.end()};
}

int Run(const RunOptions& options) {
    const bool isPrinted = options.json != "-" && options.html != "-";
    CheckOutputs({options.json, options.html}, InputsAtRisk(options), /*force=*/true);
    const analysis::Boot boot = Obtain(options.boot, /*forReport=*/!options.json.empty());
    const int status = ExitStatusOf(boot);
    if (!options.json.empty()) {
        WriteFile(options.json, [&](std::ostream& out) { record::WriteReport(out, boot.record); });
    }
    if (!isPrinted && options.html.empty()) {
        return status;
    }
    const analysis::Diagnosis diagnosis = analysis::Diagnose(boot);
    if (!options.html.empty()) {
        WriteFile(options.html, [&](std::ostream& out) { WriteBootPage(out, boot, diagnosis); });
    }
    if (isPrinted) {
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
        ->check(CheckName);
    command
        ->add_option("--html", options->html,
                     "Write a page to look at to this file; \"-\": print it instead of the diagnosis")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_flag("--all", options->all, "Print everything that was published too");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
