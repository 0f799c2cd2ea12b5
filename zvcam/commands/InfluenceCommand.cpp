#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "analysis/InfluenceSearch.h"
#include "supervisor/BootPool.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Progress.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/InfluencePage.h"
#include "zvcam/views/InfluenceView.h"

namespace zvcam {

namespace {

using analysis::Input;

struct InfluenceOptions {
    BootOptions boot;
    std::string module;
    std::size_t step = 16;
    std::string json;
    std::string html;
};

/// All inputs of a phone, or the module that the option names: "back_main" or "back main".
std::vector<Input> ChosenInputs(std::vector<Input> inputs, const std::string& module) {
    if (module.empty()) {
        return inputs;
    }
    std::vector<std::string> names;
    for (Input& input : inputs) {
        if (input.kind == Input::Kind::Module) {
            std::string name = input.name;
            std::replace(name.begin(), name.end(), ' ', '_');
            if (module == name || module == input.name) {
                return {std::move(input)};
            }
            names.push_back(std::move(name));
        }
    }
    throw std::runtime_error("--module: no module \"" + Printable(module) +
                             "\" has a memory that can be read; " +
                             (names.empty() ? "none has one" : "those that have one are " + Listed(names)));
}

/// Has the pool do the jobs of a search until there is none left, or the pool is stopped.
analysis::Influence Find(analysis::InfluenceSearch& search, supervisor::BootPool& pool) {
    Progress progress("bytes", search.bytes(), /*quiet=*/false);
    std::size_t shown = 0;
    const auto add = [&](std::vector<std::string> jobs) {
        for (std::string& job : jobs) {
            pool.add(0, std::move(job));
        }
    };
    const auto take = [&] {
        const std::optional<supervisor::PoolResult> result = pool.next();
        if (result && !result->error.empty()) {
            throw std::runtime_error("a boot could not be made: " + result->error);
        }
        if (result) {
            add(search.take(result->text));
        }
        const std::size_t settled = std::max(search.settledBytes(), shown);
        progress.advance(settled - std::exchange(shown, settled));
        return result.has_value();
    };
    add(search.begin());
    bool going = take();
    while (going) {
        // One input after the other, so that a search that is stopped knows all of the first ones.
        while (!search.allBegun() && pool.wantsJobs()) {
            add(search.beginInput());
        }
        if (pool.pending() == 0) {
            break;
        }
        going = take();
    }
    // What was done when a signal stopped the pool has come, and there is no more.
    return search.influence(/*complete=*/going && !pool.stopped());
}

int Run(const InfluenceOptions& options) {
    const std::vector<std::filesystem::path> files = InputsOf(options.boot);
    CheckOutputs({options.json, options.html}, {files.begin(), files.end()}, /*force=*/true);
    const virtualphone::PhoneDescription phone =
        ChosenPhone(ReadBootSource(options.boot.source), options.boot);
    const supervisor::BootOptions how = SupervisorOptions(options.boot, /*describe=*/false);
    const record::BootRecord unchanged = supervisor::Boot(phone, how);
    const std::vector<Input> inputs = ChosenInputs(analysis::InputsOf(phone, unchanged), options.module);
    const int status = ExitStatusOf(unchanged);
    analysis::InfluenceSearch search(phone, unchanged, inputs, options.step);
    // When a signal has stopped the pool, the program ends with it; so what is known is said while it lives.
    supervisor::BootPool pool({.boot = how}, [&](const std::string& job, supervisor::Booter& booter) {
        return search.work(job, [&](const auto& changed) { return booter.boot(changed); });
    });
    const analysis::Influence influence = Find(search, pool);
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
