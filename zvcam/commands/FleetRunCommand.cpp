#include <chrono>
#include <exception>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

#include "analysis/FleetRows.h"
#include "supervisor/BootPool.h"
#include "supervisor/Plugin.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/FleetCommands.h"
#include "zvcam/commands/Progress.h"
#include "zvcam/files/Output.h"
#include "zvcam/fleet/FleetDatabase.h"
#include "zvcam/fleet/FleetEntries.h"
#include "zvcam/fleet/RowBytes.h"
#include "zvcam/views/FleetView.h"

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

/// Boots one phone in a worker and makes rows of it.
class FleetWork {
  public:
    FleetWork(const FleetRunOptions& options, std::filesystem::path folder)
        : mOptions(options), mFolder(std::move(folder)), mLike(ReadLikePhone(options.like)) {}

    std::string operator()(const std::string& path, supervisor::Booter& booter) const {
        std::error_code error;
        analysis::FleetEntry entry = {.path = path,
                                      .pulledFolder = std::filesystem::is_directory(mFolder / path, error),
                                      .microseconds = 0};
        analysis::Boot boot;
        try {
            boot.phone = ReadFleetPhone(mFolder / path, mLike);
        } catch (const std::exception& unread) {
            return RowBytes({analysis::RowOfNotBooted(entry, analysis::NotBooted::Unread, unread.what())});
        }
        SetProperties(mOptions.boot, *boot.phone);
        const Clock::time_point start = Clock::now();
        boot.record = booter.boot(*boot.phone);
        entry.microseconds =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
        return RowBytes(analysis::RowsOf(entry, boot));
    }

  private:
    const FleetRunOptions& mOptions;
    std::filesystem::path mFolder;
    LikePhone mLike;
};

int Run(const FleetRunOptions& options) {
    FleetEntries entries = ReadFleetEntries(options.boot.source);
    const Shard shard = ReadShard(options.shard);
    KeepShard(shard, entries);
    FleetRun run = {.entries = entries.paths.size(), .repeated = entries.repeated};
    // The workers are forks, which are to know nothing of the database.
    const supervisor::BootOptions boot = SupervisorOptions(options.boot, /*describe=*/false);
    supervisor::BootPool pool({.boot = boot, .workers = options.jobs}, FleetWork(options, entries.folder));
    FleetWriter writer(options.database, options.resume,
                       {.source = entries.source,
                        .shard = shard.count == 1 ? "" : options.shard,
                        .plugin = supervisor::Plugin::BuildIdOf(boot.library)});
    const auto done = writer.paths();
    std::erase_if(entries.paths, [&](const std::string& path) { return done.contains(path); });
    run.done = run.entries - entries.paths.size();
    const Clock::time_point start = Clock::now();
    Progress progress("phones", entries.paths.size(), options.quiet);
    for (std::size_t next = 0; next < entries.paths.size() || pool.pending() > 0;) {
        for (; next < entries.paths.size() && pool.wantsJobs(); ++next) {
            pool.add(next, entries.paths[next]);
        }
        const auto result = pool.next();
        if (!result) {
            break;
        }
        if (result->error.empty()) {
            writer.add(ReadRowBytes(result->text));
        } else {
            ++run.failed;
            writer.add({analysis::RowOfNotBooted({.path = entries.paths[result->key]},
                                                 analysis::NotBooted::Failed, result->error)});
        }
        progress.advance();
    }
    writer.finish();
    progress.clear();
    run.unread = static_cast<std::size_t>(writer.unread());
    run.notReturned = static_cast<std::size_t>(writer.notReturned());
    run.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    // What a signal stopped ends as the signal would have ended it.
    if (!options.quiet && !pool.stopped()) {
        PrintOut([&](std::ostream& out) { PrintFleetRun(out, options.database, run); });
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
        ->check(CheckNotEmpty);
    command->add_option("--db", options->database, "The SQLite database to write")
        ->type_name("FILE")
        ->required()
        ->check(CheckNotEmpty);
    command->add_flag("--resume", options->resume, "Go on with a database: boot what it does not hold yet");
    command->add_option("--shard", options->shard, "Take every N-th entry, from the I-th on")
        ->type_name("I/N")
        ->check(CheckNotEmpty);
    command->add_option("--jobs", options->jobs, "Boots at a time (default: one for each processor)")
        ->type_name("COUNT")
        ->check(WholeNumber(1, 4096));
    command
        ->add_option("--like", options->like,
                     "Take what no pulled folder holds from this phone file (default: that of `zvcam phone "
                     "new`)")
        ->type_name("FILE")
        ->check(CheckNotEmpty);
    command->add_flag("-q,--quiet", options->quiet, "Print nothing but errors");
    AddSharedBootOptions(*command, options->boot);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
