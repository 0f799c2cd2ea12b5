#include <cstddef>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/Influence.h"
#include "analysis/InfluenceSearch.h"
#include "supervisor/Boot.h"
#include "supervisor/BootPool.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/FindInfluence.h"
#include "zvcam/commands/Named.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
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
    const std::vector<std::filesystem::path> files = InputsOf(options.boot);
    CheckOutputs({options.json, options.html}, {files.begin(), files.end()}, /*force=*/true);
    const virtualphone::PhoneDescription phone =
        ChosenPhone(ReadBootSource(options.boot.source), options.boot);
    const supervisor::BootOptions how = SupervisorOptions(options.boot, /*describe=*/false);
    const record::BootRecord unchanged = supervisor::Boot(phone, how);
    const std::vector<analysis::Input> inputs =
        InputsNamed(analysis::InputsOf(phone, unchanged), options.module);
    const int status = ExitStatusOf(unchanged);
    analysis::InfluenceSearch search(phone, unchanged, inputs, options.step);
    // When a signal has stopped the pool, the program ends with it; so what is known is said while it lives.
    supervisor::BootPool pool({.boot = how}, [&](const std::string& job, supervisor::Booter& booter) {
        return search.work(job, [&](const auto& changed) { return booter.boot(changed); });
    });
    const analysis::Influence influence = FindInfluence(search, pool);
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
        ->check(CheckName);
    command
        ->add_option("--step", options->step,
                     "Change so many bytes at a time before single ones (default: 16; 1: each by itself)")
        ->type_name("BYTES")
        ->check(WholeNumber(1, 1024));
    command->add_option("--json", options->json, "Write the result to this file; \"-\": print it instead")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_option("--html", options->html, "Write the result as a page to this file")
        ->type_name("FILE")
        ->check(CheckName);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
