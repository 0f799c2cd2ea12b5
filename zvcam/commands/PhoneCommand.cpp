#include "zvcam/commands/Commands.h"
#include "zvcam/commands/PhoneCommands.h"

namespace zvcam {

void AddPhoneCommand(CLI::App& app, std::function<int()>& chosen) {
    CLI::App* const phone = app.add_subcommand("phone", "Check and make phone files");
    phone->require_subcommand(1);
    for (const auto& add :
         {AddPhoneCheckCommand, AddPhoneNewCommand, AddPhoneFromDeviceCommand, AddPhoneSchemaCommand}) {
        add(*phone, chosen);
    }
}

}  // namespace zvcam
