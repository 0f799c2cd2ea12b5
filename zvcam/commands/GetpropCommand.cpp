#include <map>
#include <memory>
#include <ostream>
#include <string>

#include "analysis/Properties.h"
#include "zvcam/commands/BootOptions.h"
#include "zvcam/commands/Boots.h"
#include "zvcam/commands/Commands.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/Text.h"

namespace zvcam {

namespace {

struct GetpropOptions {
    BootOptions boot;
    std::string name;
};

int Run(const GetpropOptions& options) {
    const analysis::Boot boot = Obtain(options.boot);
    const std::map<std::string, std::string> properties = analysis::PropertiesAfter(boot);
    PrintOut([&](std::ostream& out) {
        if (!options.name.empty()) {
            const auto found = properties.find(options.name);
            out << (found == properties.end() ? "" : Printable(found->second)) << '\n';
            return;
        }
        for (const auto& [name, value] : properties) {
            out << '[' << Printable(name) << "]: [" << Printable(value) << "]\n";
        }
    });
    return ExitStatusOf(boot);
}

}  // namespace

void AddGetpropCommand(CLI::App& app, std::function<int()>& chosen) {
    const auto options = std::make_shared<GetpropOptions>();
    CLI::App* const command = app.add_subcommand("getprop", "Print the system properties after the boot");
    AddBootOptions(*command, options->boot);
    command->add_option("NAME", options->name, "Print the value of this property alone")->check(CheckName);
    command->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
