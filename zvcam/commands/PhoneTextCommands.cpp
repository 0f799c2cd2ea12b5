#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "virtualphone/PhoneFile.h"
#include "zvcam/commands/ExitStatus.h"
#include "zvcam/commands/PhoneCommands.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"

namespace zvcam {

namespace {

struct TextOptions {
    std::string output = "-";
    bool force = false;
};

/// A command that writes a text of the program.
void AddTextCommand(CLI::App& phone, std::function<int()>& chosen, const char* name, const char* help,
                    std::string_view text) {
    const auto options = std::make_shared<TextOptions>();
    CLI::App* const command = phone.add_subcommand(name, help);
    command->add_option("-o,--output", options->output, "Write it to this file (default: standard output)")
        ->type_name("FILE")
        ->check(CheckName);
    command->add_flag("--force", options->force, "Replace the file where it exists");
    command->callback([options, &chosen, text] {
        chosen = [options, text] {
            CheckMayReplace(options->output, options->force);
            WriteFile(options->output, [text](std::ostream& out) { out << text; });
            return kExitSuccess;
        };
    });
}

}  // namespace

void AddPhoneNewCommand(CLI::App& phone, std::function<int()>& chosen) {
    AddTextCommand(phone, chosen, "new", "Write a commented phone file to start from",
                   virtualphone::StartingPhoneFile());
}

void AddPhoneSchemaCommand(CLI::App& phone, std::function<int()>& chosen) {
    AddTextCommand(phone, chosen, "schema", "Write the JSON Schema of the phone file",
                   virtualphone::PhoneFileSchema());
}

}  // namespace zvcam
