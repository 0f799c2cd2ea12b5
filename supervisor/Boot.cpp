#include "supervisor/Boot.h"

#include <utility>

#include "supervisor/Plugin.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

namespace supervisor {

BootOutcome Boot(virtualphone::PhoneDescription description, const std::filesystem::path& root,
                 const std::filesystem::path& library) {
    std::optional<virtualphone::TemporaryFolder> temporary;
    if (root.empty()) {
        temporary.emplace();
    }
    BootOutcome outcome;
    outcome.phone = description.name;
    const virtualphone::VirtualPhone phone(std::move(description), temporary ? temporary->path() : root);
    // After the phone, which the library's initialisers and finalisers may use.
    const Plugin plugin(library);
    outcome.exception = plugin.run();
    outcome.record = phone.record();
    outcome.files = phone.changedFiles();
    return outcome;
}

}  // namespace supervisor
