#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Files.h"
#include "zvcam/commands/InfluenceRun.h"
#include "zvcam/commands/Output.h"
#include "zvcam/views/InfluencePage.h"
#include "zvcam/views/InfluenceView.h"

namespace zvcam {

namespace {

struct InfluenceOptions {
    BootOptions boot;
    std::string module;
    std::size_t step = 16;
    std::string json;
    std::string html;
};

int Run(const InfluenceOptions& options) {
    const std::vector<std::filesystem::path> inputs = InputsOf(options.boot);
    CheckOutputs({options.json, options.html}, {inputs.begin(), inputs.end()}, /*force=*/true);
    InfluenceRun run(PhoneOf(options.boot), {.boot = SupervisorOptions(options.boot, /*describe=*/false),
                                             .module = options.module,
                                             .step = options.step});
    const int status = ExitStatusOf(run.unchanged());
    const analysis::Influence influence = run.find();
    if (!options.json.empty()) {
        WriteFile(options.json, [&](std::ostream& out) { WriteInfluence(out, influence); });
    }
    if (!options.html.empty()) {
        WriteFile(options.html, [&](std::ostream& out) { WriteInfluencePage(out, influence); });
    }
    if (options.json != "-" && options.html != "-") {
        PrintOut([&](std::ostream& out) { PrintInfluence(out, influence, OutputStyle()); });
    }
    return status;
}

}  // namespace

void AddInfluenceCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<InfluenceOptions>();
    CLI::App* const command = app.add_subcommand(
        "influence", "Find out, by boots with changed bytes, which inputs decide what is published");
    AddSource(*command, options->boot);
    AddSharedBootOptions(*command, options->boot);
    command
        ->add_option("--module", options->module,
                     "Change this module's memory alone: back_main, front_main and so on")
        ->type_name("ROLE")
        ->check(CheckNotEmpty);
    command
        ->add_option("--step", options->step,
                     "Change so many bytes at a time before single ones (default: 16; 1: each by itself)")
        ->type_name("BYTES")
        ->check(WholeNumber(1, 1024));
    command->add_option("--json", options->json, "Write the result to this file; \"-\": print it instead")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command->add_option("--html", options->html, "Write the result as a page to this file")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
