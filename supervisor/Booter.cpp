#include "supervisor/Booter.h"

#include <cerrno>
#include <optional>
#include <string>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "supervisor/EndOnSignal.h"
#include "supervisor/internal/PhoneProcess.h"
#include "supervisor/internal/PluginServer.h"
#include "supervisor/internal/Process.h"
#include "supervisor/internal/SharedLog.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"

namespace supervisor {

using virtualphone::DeviceFiles;

namespace {

/// A boot that an ending signal has cut short says nothing of its phone.
void RefuseCutShort() {
    if (EndingWaits::arrived()) {
        throw std::system_error(std::make_error_code(std::errc::interrupted), "an ending signal");
    }
}

}  // namespace

struct Booter::State {
    explicit State(BootOptions bootOptions) : options(std::move(bootOptions)) {
        if (options.root.empty()) {
            endingWaits.emplace();
            options.root = temporary.emplace().path();
        }
        options.cleanRoot = true;
        useRoot();
        server = PluginServer::Start(options.library, options.timeout, *files, log);
    }

    void useRoot() { files.emplace(options.root, DeviceFiles::Contents(), DeviceFiles::Root::Fresh); }

    std::optional<EndingWaits> endingWaits;  ///< first to come and last to go
    BootOptions options;
    std::optional<virtualphone::TemporaryFolder> temporary;
    std::optional<DeviceFiles> files;  ///< none while, and since, a phone had the root for itself
    DeviceFiles::Traces traces;        ///< of the last boot; nothing is known of the root at first
    SharedLog log{options.recordLimit};
    std::unique_ptr<PluginServer> server;
};

Booter::Booter(BootOptions options) : mState(std::make_unique<State>(std::move(options))) {}

Booter::~Booter() = default;

record::BootRecord Booter::boot(const virtualphone::PhoneDescription& phone,
                                const virtualphone::FailingCalls& failing) {
    State& state = *mState;
    BootOptions options = state.options;
    for (const auto& [call, numbers] : failing) {
        options.failing[call].insert(numbers.begin(), numbers.end());
    }
    const EndingWaits endingWaits;
    std::optional<Child> child;
    if (state.server) {
        if (!state.files) {
            state.useRoot();
        }
        state.files->renew(phone.files, std::exchange(state.traces, {}));
        state.log.clear();
        child = state.server->boot(phone, options.failing);
    }
    if (!child) {
        // The root is one phone's at a time.
        state.files.reset();
        record::BootRecord boot = Boot(phone, options);
        RefuseCutShort();
        return boot;
    }
    const File process(static_cast<int>(syscall(SYS_pidfd_open, child->id(), 0)), "cannot watch a process");
    const bool ended = WaitFor(process.get(), state.options.timeout);
    const int status = child->end();
    RefuseCutShort();
    record::BootRecord boot =
        ReadPhoneLog(state.log, status, ended ? std::nullopt : std::optional(state.options.timeout));
    boot.phone = phone.name;
    if (state.options.describe) {
        boot.description = virtualphone::PhoneFileText(phone);
    }
    state.traces = state.files->tell(boot);
    return boot;
}

}  // namespace supervisor
