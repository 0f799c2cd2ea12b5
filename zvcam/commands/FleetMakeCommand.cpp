#include <cstdint>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "supervisor/EndOnSignal.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/FleetCommands.h"
#include "zvcam/commands/Progress.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/files/PhoneFolder.h"
#include "zvcam/fleet/MadeFolder.h"
#include "zvcam/fleet/Maker.h"
#include "zvcam/fleet/Troubles.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

/// Each is a file of some kilobytes.
constexpr std::uint64_t kMostPhones = 10'000'000;

struct MakeOptions {
    std::string output;
    std::string like;
    std::string troubles;
    std::uint64_t count = 0;
    std::uint64_t seed = 0;
    bool quiet = false;
};

int Run(const MakeOptions& options) {
    const std::vector<TroubleRate> rates = ReadTroubleRates(options.troubles);
    const FleetMaker maker(ReadLikePhone(options.like).phone, options.seed, rates);
    // An ending signal waits until the folder is gone.
    const supervisor::EndingWaits waits;
    MadeFolder folder(options.output, maker.like());
    Progress progress("phones", options.count, options.quiet);
    for (std::uint64_t number = 0; number < options.count; ++number) {
        if (supervisor::EndingWaits::arrived()) {
            progress.clear();
            Complain("interrupted; nothing of " + options.output + " is left");
            return kExitUnusable;
        }
        folder.add(number, maker.make(number));
        progress.advance();
    }
    const std::vector<std::size_t> counts = folder.finish(rates);
    progress.clear();
    if (!options.quiet) {
        PrintOut([&](std::ostream& out) {
            out << Counted(options.count, "phone") << " in " << Printable(options.output) << '\n';
            Table table;
            for (std::size_t i = 0; i < rates.size(); ++i) {
                const Trouble& trouble = Troubles()[rates[i].trouble];
                table.row({trouble.name, std::to_string(counts[i]), trouble.meaning});
            }
            table.print(out, 2);
        });
    }
    return kExitSuccess;
}

}  // namespace

void AddFleetMakeCommand(CLI::App& fleet, std::function<int()>& chosen) {
    const auto options = std::make_shared<MakeOptions>();
    CLI::App* const command =
        fleet.add_subcommand("make", "Make a fleet of phone files with troubles that are known");
    std::string troubles = "Troubles and their rates, such as lsc=0.01,erased=0.002; there are";
    for (const Trouble& trouble : Troubles()) {
        troubles += std::string(trouble.name == Troubles()[0].name ? " " : ", ") + trouble.name;
    }
    command->add_option("--count", options->count, "How many phones")
        ->required()
        ->check(WholeNumber(1, kMostPhones));
    command
        ->add_option("--seed", options->seed, "The same seed makes the same phones everywhere (default: 0)")
        ->check(WholeNumber(0, std::numeric_limits<std::uint64_t>::max()));
    command->add_option("--trouble", options->troubles, troubles)->type_name("NAME=RATE,...");
    command
        ->add_option("--like", options->like,
                     "The phone that all are like (default: that of `zvcam phone new`)")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_option("-o,--output", options->output, "The folder to write")
        ->type_name("FOLDER")
        ->required()
        ->check(CheckName);
    command->add_flag("-q,--quiet", options->quiet, "Print nothing but errors");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
