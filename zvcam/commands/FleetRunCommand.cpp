#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "supervisor/BootPool.h"
#include "supervisor/Plugin.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/FleetCommands.h"
#include "zvcam/commands/Limits.h"
#include "zvcam/commands/Progress.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/files/PhoneFolder.h"
#include "zvcam/fleet/FleetDatabase.h"
#include "zvcam/fleet/FleetEntries.h"
#include "zvcam/fleet/FleetWork.h"
#include "zvcam/views/FleetView.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

using Clock = std::chrono::steady_clock;

struct FleetRunOptions {
    BootOptions boot;
    std::string database;
    std::string like;
    std::string shard = "1/1";
    std::size_t jobs = 0;
    bool resume = false;
    bool quiet = false;
};

/// The options that change phones, as a shell takes them; the same text for what does the same.
std::string ChangingOptions(const FleetRunOptions& options) {
    std::string text;
    for (const auto& [name, value] : PropertiesOf(options.boot)) {
        std::string property = name;
        property.append("=").append(value);
        text += " --set " + ShellQuoted(property);
    }
    if (!options.like.empty()) {
        text += " --like " + ShellQuoted(std::filesystem::absolute(options.like).lexically_normal().string());
    }
    return text.substr(text.empty() ? 0 : 1);
}

int Run(const FleetRunOptions& options) {
    FleetEntries entries = ReadFleetEntries(options.boot.source);
    const Shard shard = ReadShard(options.shard);
    KeepShard(shard, entries);
    FleetRun run = {.entries = entries.paths.size(), .repeated = entries.repeated};
    const std::size_t workers = std::min(options.jobs, entries.paths.size());
    // More than the pool has for each worker.
    ExpectOpenFiles(64 + 4 * workers);
    // The workers are forks, which are to know nothing of the database.
    const supervisor::BootOptions boot = SupervisorOptions(options.boot, /*describe=*/false);
    supervisor::BootPool pool({.boot = boot, .workers = workers},
                              FleetWork(entries.folder, ReadLikePhone(options.like),
                                        [&](auto& phone) { SetProperties(options.boot, phone); }));
    FleetWriter writer(options.database, options.resume,
                       {.source = entries.source,
                        .shard = shard.count == 1 ? "" : options.shard,
                        .options = ChangingOptions(options),
                        .plugin = supervisor::Plugin::BuildIdOf(boot.library)});
    const auto done = writer.paths();
    std::erase_if(entries.paths, [&](const std::string& path) { return done.contains(path); });
    run.done = run.entries - entries.paths.size();
    const Clock::time_point start = Clock::now();
    Progress progress("phones", entries.paths.size(), options.quiet);
    try {
        run.failed = BootEntries(entries.paths, pool, writer, [&] { progress.advance(); });
        writer.finish();
    } catch (const DatabaseError& error) {
        if (pool.stopped()) {
            // The program ends with the pool.
            Complain(error.what());
        }
        throw;
    }
    progress.clear();
    run.unread = static_cast<std::size_t>(writer.unread());
    run.notReturned = static_cast<std::size_t>(writer.notReturned());
    run.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (pool.stopped()) {
        // Ends as the signal that stopped it would have ended it.
        Complain("interrupted; " + options.database + " holds what was booted, and --resume goes on");
        return kExitUnusable;
    }
    if (!options.quiet) {
        PrintOut([&](std::ostream& out) { PrintFleetRun(out, options.database, run); });
    }
    if (run.failed > 0) {
        Complain("could not boot " + Counted(run.failed, "phone") + " here; --resume tries again");
    }
    return run.failed == 0 ? kExitSuccess : kExitUnusable;
}

}  // namespace

void AddFleetRunCommand(CLI::App& fleet, std::function<int()>& chosen) {
    const auto options = std::make_shared<FleetRunOptions>();
    CLI::App* const command =
        fleet.add_subcommand("run", "Boot many phones and keep what became of them in a database");
    command
        ->add_option("SOURCE", options->boot.source,
                     "A list of phone files and folders pulled from devices, one path a line; a folder to "
                     "search for them; or \"-\": a list on standard input")
        ->type_name("LIST|FOLDER")
        ->required()
        ->check(CheckName);
    command->add_option("--db", options->database, "The SQLite database to write")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    command->add_flag("--resume", options->resume, "Go on with a database: boot what it does not hold yet");
    command->add_option("--shard", options->shard, "Take every N-th entry, from the I-th on")
        ->type_name("I/N")
        ->check(CheckName);
    command->add_option("--jobs", options->jobs, "Boots at a time (default: one for each processor)")
        ->type_name("COUNT")
        ->check(WholeNumber(1, 4096));
    command
        ->add_option("--like", options->like,
                     "Take what no pulled folder holds from this phone file (default: that of `zvcam phone "
                     "new`)")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_flag("-q,--quiet", options->quiet, "Print nothing but errors");
    AddSharedBootOptions(*command, options->boot);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
