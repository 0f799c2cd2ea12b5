#include "supervisor/Boot.h"

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <mutex>
#include <optional>
#include <poll.h>
#include <pthread.h>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "record/Recorder.h"
#include "record/internal/EventFrames.h"
#include "supervisor/EndOnSignal.h"
#include "supervisor/Plugin.h"
#include "supervisor/internal/Process.h"
#include "supervisor/internal/SharedLog.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/PhoneFile.h"
#include "virtualphone/TemporaryFolder.h"
#include "virtualphone/VirtualPhone.h"

namespace supervisor {

namespace {

using record::Ended;

/// What a message of the child is; its first byte.
enum class Message : std::uint8_t {
    Event,      ///< an event's bytes
    Library,    ///< the absolute path of the loaded library
    BuildId,    ///< its build id
    NoPlugin,   ///< why the library cannot be used
    Threw,      ///< what the plug-in threw
    Completed,  ///< ran and unloaded: the child is about to leave
};

/// Room that events leave to the other messages, and the longest text of these.
constexpr std::size_t kSpare = std::size_t{64} << 10;
constexpr std::size_t kLongestText = std::size_t{8} << 10;

/// Whether this process is the one that boots the phone, and no fork of it: their events would mix.
std::atomic<bool> gIsPhone = false;

/// The child's end of the log.
class Reporter final : public record::EventSink {
  public:
    explicit Reporter(SharedLog& log) : mLog(log) {}

    void take(record::Event event) override {
        if (!gIsPhone) {
            return;
        }
        const std::lock_guard lock(mMutex);
        mBytes.assign(1, static_cast<std::uint8_t>(Message::Event));
        record::AppendEvent(mBytes, event);
        mLog.append(mBytes, kSpare);
    }

    void say(Message message, std::string_view text = {}) {
        const std::lock_guard lock(mMutex);
        mBytes.assign(1, static_cast<std::uint8_t>(message));
        text = text.substr(0, kLongestText);
        mBytes.insert(mBytes.end(), text.begin(), text.end());
        mLog.append(mBytes, 0);
    }

  private:
    SharedLog& mLog;
    std::mutex mMutex;
    std::vector<std::uint8_t> mBytes;
};

/// All that the child does.
void Run(const std::filesystem::path& library, Reporter& reporter) {
    const Plugin plugin(library);
    const record::PluginIdentity identity = plugin.identity();
    reporter.say(Message::Library, identity.path);
    reporter.say(Message::BuildId, identity.buildId);
    if (const std::optional<std::string> exception = plugin.run()) {
        reporter.say(Message::Threw, *exception);
    }
}

[[noreturn]] void RunAndLeave(virtualphone::PhoneDescription description,
                              const virtualphone::DeviceFiles& files, const std::filesystem::path& library,
                              SharedLog& log) {
    gIsPhone = true;
    pthread_atfork(nullptr, nullptr, [] { gIsPhone = false; });
    Reporter reporter(log);
    try {
        // Before the library, whose initialisers and finalisers may use it.
        const virtualphone::VirtualPhone phone(std::move(description), files, reporter);
        Run(library, reporter);
        std::cout.flush();
        std::fflush(nullptr);
        reporter.say(Message::Completed);
        // With the phone still on: to take it apart is time lost.
        _exit(0);
    } catch (const std::exception& error) {
        reporter.say(Message::NoPlugin, error.what());
        _exit(0);
    }
}

/// What the child said.
struct Told {
    bool completed = false;
    std::optional<std::string> threw;
    std::optional<std::string> noPlugin;
};

Told TakeMessages(const SharedLog& log, record::BootRecord& boot) {
    Told told;
    SharedLog::Contents contents = log.read();
    boot.events.reserve(contents.messages.size());
    for (const std::span<const std::uint8_t> message : contents.messages) {
        const auto kind = message.empty() ? Message{0xFF} : static_cast<Message>(message[0]);
        const auto body = message.empty() ? message : message.subspan(1);
        const std::string text = kind == Message::Event ? "" : std::string(body.begin(), body.end());
        std::optional<record::Event> event;
        switch (kind) {
            case Message::Event:
                event = record::ReadEvent(body);
                if (event) {
                    boot.events.push_back(std::move(*event));
                } else {
                    contents.damaged = true;
                }
                break;
            case Message::Library:
                boot.plugin = {.path = text, .buildId = ""};
                break;
            case Message::BuildId:
                if (boot.plugin) {
                    boot.plugin->buildId = text;
                }
                break;
            case Message::NoPlugin:
                told.noPlugin = text;
                break;
            case Message::Threw:
                told.threw = text;
                break;
            case Message::Completed:
                told.completed = true;
                break;
            default:
                contents.damaged = true;
        }
    }
    if (contents.lost > 0) {
        boot.troubles.push_back("the record is full: " + std::to_string(contents.lost) +
                                " later events are lost");
    }
    if (contents.damaged) {
        boot.troubles.push_back("the record is damaged: the plug-in has written into it");
    }
    return told;
}

}  // namespace

struct RunningBoot::State {
    State(virtualphone::PhoneDescription phone, const BootOptions& options)
        : name(phone.name),
          timeout(options.timeout),
          description(options.describe ? virtualphone::PhoneFileText(phone) : ""),
          files(options.root.empty() ? temporary.emplace().path() : options.root, phone.files,
                options.cleanRoot),
          log(options.recordLimit),
          timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC), "cannot make a timer"),
          events(epoll_create1(EPOLL_CLOEXEC), "cannot make a poll") {
        // Made here: the path may depend on this program's working folder.
        const std::filesystem::path library = std::filesystem::absolute(options.library);
        child = Child(Fork());
        if (child.id() == 0) {
            RunAndLeave(std::move(phone), files, library, log);
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
    virtualphone::DeviceFiles files;
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
    record::BootRecord boot;
    boot.phone = state->name;
    boot.description = std::move(state->description);
    boot.foreignFiles = state->files.foreignFiles();
    const Told told = TakeMessages(state->log, boot);
    if (told.noPlugin) {
        throw PluginError(*told.noPlugin);
    }
    Ended& ended = boot.ended.emplace();
    if (timeOver) {
        ended.how = Ended::How::Timeout;
        ended.seconds = std::chrono::duration<double>(state->timeout).count();
    } else if (WIFSIGNALED(status)) {
        ended.how = Ended::How::Signal;
        ended.signal = WTERMSIG(status);
    } else if (!told.completed) {
        ended.how = Ended::How::Exited;
        ended.exitStatus = WEXITSTATUS(status);
    } else if (told.threw) {
        ended.how = Ended::How::Threw;
        ended.what = *told.threw;
    }
    if (!ended.returned()) {
        ended.step = record::LastOperation(boot.events);
    }
    virtualphone::DeviceFiles::Written written = state->files.written(boot.troubles);
    boot.files = std::move(written.changed);
    boot.rewritten = std::move(written.rewritten);
    return boot;
}

record::BootRecord Boot(virtualphone::PhoneDescription phone, const BootOptions& options) {
    return RunningBoot(std::move(phone), options).finish();
}

}  // namespace supervisor
