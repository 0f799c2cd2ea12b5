#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "analysis/PhoneCheck.h"
#include "virtualphone/InputFile.h"
#include "virtualphone/PhoneFile.h"
#include "zvcam/commands/ForEachFile.h"
#include "zvcam/commands/PhoneCommands.h"
#include "zvcam/commands/Terminal.h"
#include "zvcam/commands/Validators.h"
#include "zvcam/files/Output.h"
#include "zvcam/views/PhoneView.h"

namespace zvcam {

namespace {

struct PhoneCheckOptions {
    std::vector<std::string> sources;
};

int Run(const PhoneCheckOptions& options) {
    return ForEachFile(options.sources, [](const std::string& source) {
        const virtualphone::PhoneDescription phone = virtualphone::ReadPhoneFile(source);
        const analysis::PhoneCheck check = analysis::Check(phone);
        PrintOut([&](std::ostream& out) {
            PrintPhoneCheck(out, virtualphone::InputName(source), phone, check, OutputStyle());
        });
        return !check.bad();
    });
}

}  // namespace

void AddPhoneCheckCommand(CLI::App& phone, std::function<int()>& chosen) {
    const auto options = std::make_shared<PhoneCheckOptions>();
    CLI::App* const check =
        phone.add_subcommand("check", "Print what phone files have, and what is wrong, without a boot");
    check->add_option("P", options->sources, "Phone files, or \"-\"")
        ->type_name("FILE")
        ->required()
        ->check(CheckName);
    check->callback([options, &chosen] { chosen = [options] { return Run(*options); }; });
}

}  // namespace zvcam
