#include "supervisor/Boot.h"

#include <optional>
#include <utility>

#include "record/Recorder.h"
#include "supervisor/Plugin.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

namespace supervisor {

record::BootRecord Boot(const virtualphone::PhoneDescription& description, const BootOptions& options) {
    std::optional<virtualphone::TemporaryFolder> temporary;
    if (options.root.empty()) {
        temporary.emplace();
    }
    record::BootRecord boot;
    boot.phone = description.name;
    record::Recorder recorder;
    const virtualphone::VirtualPhone phone(description, temporary ? temporary->path() : options.root,
                                           recorder);
    // After the phone, which the library's initialisers and finalisers may use.
    const Plugin plugin(options.library);
    boot.plugin = plugin.identity();
    std::optional<std::string> exception = plugin.run();
    boot.events = recorder.events();
    boot.ended.emplace();
    if (exception) {
        boot.ended = {.how = record::Ended::How::Threw,
                      .what = std::move(*exception),
                      .step = record::LastOperation(boot.events)};
    }
    boot.files = phone.changedFiles();
    return boot;
}

}  // namespace supervisor
