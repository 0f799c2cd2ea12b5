#include <filesystem>
#include <iostream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include "analysis/Diff.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/DiagnosisWords.h"
#include "zvcam/views/DiffView.h"

namespace zvcam {

namespace {

struct DiffOptions {
    BootOptions boot;  ///< of both; its source is the left one
    std::string right;
    bool log = false;
};

void SayForeignFiles(const char* which, const record::BootRecord& boot) {
    if (const std::string words = ForeignFilesText(boot); !words.empty()) {
        std::cerr << "zvcam: " << which << ": " << words << '\n';
    }
}

int Run(const DiffOptions& options) {
    if (options.boot.source == "-" && options.right == "-") {
        throw std::runtime_error("standard input holds one boot, not two");
    }
    BootOptions rightOptions = options.boot;
    rightOptions.source = options.right;
    const BootSource leftSource = ReadBootSource(options.boot.source);
    const BootSource rightSource = ReadBootSource(options.right);
    if (leftSource.isReport && rightSource.isReport) {
        RefuseBootOptions(leftSource, options.boot);
    }
    BootOptions leftOptions = options.boot;
    // What one phone leaves in a root would be found by the other.
    if (!options.boot.root.empty()) {
        leftOptions.root = (std::filesystem::path(options.boot.root) / "A").string();
        rightOptions.root = (std::filesystem::path(options.boot.root) / "B").string();
    }
    const analysis::Boot left = Obtain(leftSource, leftOptions);
    const analysis::Boot right = Obtain(rightSource, rightOptions);
    const analysis::Differences differences = analysis::Compare(left, right);
    PrintOut([&](std::ostream& out) { PrintDifferences(out, differences, options.log, OutputStyle()); });
    // Not among the differences, of which there may be none.
    SayForeignFiles("A", left.record);
    SayForeignFiles("B", right.record);
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
    command->add_flag("--log", options->log, "Print every line of the log that differs, however many");
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
