#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include "analysis/Diff.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Output.h"
#include "zvcam/views/DiffView.h"

namespace zvcam {

namespace {

struct DiffOptions {
    BootOptions boot;  ///< of both; its source is the left one
    std::string right;
};

int Run(const DiffOptions& options) {
    if (options.boot.source == "-" && options.right == "-") {
        throw std::runtime_error("standard input holds one boot, not two");
    }
    BootOptions rightOptions = options.boot;
    rightOptions.source = options.right;
    const analysis::Boot left = Obtain(options.boot);
    const analysis::Boot right = Obtain(rightOptions);
    const analysis::Differences differences = analysis::Compare(left, right);
    PrintOut([&](std::ostream& out) { PrintDifferences(out, differences, OutputStyle()); });
    return differences.none() ? kExitSuccess : kExitBad;
}

}  // namespace

void AddDiffCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<DiffOptions>();
    CLI::App* const command =
        app.add_subcommand("diff", "Print what differs between two boots; nothing where they agree");
    command->add_option("A", options->boot.source, "A phone file (booted first), a report, or \"-\"")
        ->required();
    command->add_option("B", options->right, "Another one")->required();
    AddBootOptionsWithoutSource(*command, options->boot);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
