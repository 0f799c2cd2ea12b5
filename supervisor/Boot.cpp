#include "supervisor/Boot.h"

#include <cerrno>
#include <optional>
#include <poll.h>
#include <string>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

#include "supervisor/EndOnSignal.h"
#include "supervisor/Plugin.h"
#include "supervisor/internal/PhoneProcess.h"
#include "supervisor/internal/Process.h"
#include "supervisor/internal/SharedLog.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"

namespace supervisor {

using virtualphone::DeviceFiles;

struct RunningBoot::State {
    State(virtualphone::PhoneDescription phone, const BootOptions& options)
        : name(phone.name),
          timeout(options.timeout),
          description(options.describe ? virtualphone::PhoneFileText(phone) : ""),
          files(options.root.empty() ? temporary.emplace().path() : options.root, phone.files,
                options.root.empty() ? DeviceFiles::Root::Fresh
                : options.cleanRoot  ? DeviceFiles::Root::Emptied
                                     : DeviceFiles::Root::Kept),
          log(options.recordLimit),
          timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC), "cannot make a timer"),
          events(epoll_create1(EPOLL_CLOEXEC), "cannot make a poll") {
        // Made here: the path may depend on this program's working folder.
        const std::filesystem::path library = std::filesystem::absolute(options.library);
        child = Child(Fork());
        if (child.id() == 0) {
            std::optional<Plugin> none;
            BePhone(std::move(phone), options.failing, files, library, none, log);
        }
        watch();
    }

    void watch() {
        process.emplace(static_cast<int>(syscall(SYS_pidfd_open, child.id(), 0)), "cannot watch a process");
        const auto whole = std::chrono::duration_cast<std::chrono::seconds>(timeout);
        itimerspec limit{};
        limit.it_value.tv_sec = whole.count();
        // A limit of nothing would mean none.
        limit.it_value.tv_nsec =
            std::chrono::nanoseconds(timeout - whole).count() + (timeout.count() == 0 ? 1 : 0);
        timerfd_settime(timer.get(), 0, &limit, nullptr);
        for (const int file : {process->get(), timer.get(), EndingWaits::pollFd()}) {
            epoll_event event{.events = EPOLLIN, .data = {}};
            if (file >= 0 && epoll_ctl(events.get(), EPOLL_CTL_ADD, file, &event) != 0) {
                throw Failure("cannot watch a process");
            }
        }
    }

    bool readable(int file) const {
        pollfd poll{.fd = file, .events = POLLIN, .revents = 0};
        return ::poll(&poll, 1, 0) == 1;
    }

    EndingWaits endingWaits;  ///< first to come and last to go
    std::string name;
    std::chrono::milliseconds timeout;
    std::string description;
    std::optional<virtualphone::TemporaryFolder> temporary;
    DeviceFiles files;
    SharedLog log;
    File timer;
    File events;
    std::optional<File> process;
    Child child;
};

RunningBoot::RunningBoot(virtualphone::PhoneDescription phone, const BootOptions& options)
    : mState(std::make_unique<State>(std::move(phone), options)) {}

RunningBoot::~RunningBoot() = default;
RunningBoot::RunningBoot(RunningBoot&&) noexcept = default;
RunningBoot& RunningBoot::operator=(RunningBoot&&) noexcept = default;

int RunningBoot::pollFd() const {
    return mState->events.get();
}

record::BootRecord RunningBoot::finish() {
    const std::unique_ptr<State> state = std::move(mState);
    pollfd poll{.fd = state->events.get(), .events = POLLIN, .revents = 0};
    while (::poll(&poll, 1, -1) < 0 && errno == EINTR) {
    }
    const bool timeOver = !state->readable(state->process->get()) && state->readable(state->timer.get());
    const int status = state->child.end();
    record::BootRecord boot =
        ReadPhoneLog(state->log, status, timeOver ? std::optional(state->timeout) : std::nullopt);
    boot.phone = state->name;
    boot.description = std::move(state->description);
    state->files.tell(boot);
    return boot;
}

record::BootRecord Boot(virtualphone::PhoneDescription phone, const BootOptions& options) {
    return RunningBoot(std::move(phone), options).finish();
}

}  // namespace supervisor
