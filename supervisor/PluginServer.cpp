#include "supervisor/internal/PluginServer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

#include "supervisor/Plugin.h"
#include "supervisor/internal/DescriptionBytes.h"
#include "supervisor/internal/PhoneProcess.h"
#include "virtualphone/VirtualPhone.h"

namespace supervisor {

namespace {

/// Room for a phone without its files; only what is written takes memory.
constexpr std::size_t kLargestPhone = std::size_t{256} << 20;

/// What the server says of the library.
enum class Loaded : char { Well, WithTraces, NoPlugin };

/// Notes that there was an event.
class Witness final : public record::EventSink {
  public:
    void take(record::Event /*event*/) override { mSaw = true; }
    bool saw() const { return mSaw; }

  private:
    std::atomic<bool> mSaw = false;
};

/// Whether there are threads beside this one, or nobody knows.
bool MayHaveThreads() {
    std::error_code error;
    const std::filesystem::directory_iterator threads("/proc/self/task", error);
    return error || std::distance(threads, {}) > 1;
}

/// Longest message of the loader that is passed on, in bytes.
constexpr std::size_t kLongestAnswer = 4096;

bool Say(int socket, std::string_view message) {
    return send(socket, message.data(), message.size(), MSG_NOSIGNAL) >= 0;
}

/// The next message; empty when the other side is gone, or the socket's own time for it is over.
std::string Hear(int socket) {
    std::string message(kLongestAnswer, '\0');
    ssize_t count = 0;
    do {
        count = recv(socket, message.data(), message.size(), 0);
    } while (count < 0 && errno == EINTR);
    message.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return message;
}

std::optional<Plugin> Load(int bell, const std::filesystem::path& library,
                           const virtualphone::DeviceFiles& files) {
    std::optional<Plugin> plugin;
    Witness witness;
    std::string answer(1, static_cast<char>(Loaded::Well));
    try {
        const virtualphone::VirtualPhone nobodys({}, files, witness);
        plugin.emplace(library);
    } catch (const PluginError& error) {
        answer[0] = static_cast<char>(Loaded::NoPlugin);
        answer += error.what();
    }
    if (plugin && (witness.saw() || MayHaveThreads())) {
        answer[0] = static_cast<char>(Loaded::WithTraces);
    }
    Say(bell, std::string_view(answer).substr(0, kLongestAnswer));
    return plugin;
}

/// The fork becomes a phone. It answers itself, before anything of the plug-in runs that may end or stop the
/// server.
[[noreturn]] void BecomePhone(int bell, pid_t supervisor, std::optional<Plugin>& plugin,
                              const SharedLog& phones, const virtualphone::DeviceFiles& files,
                              SharedLog& log) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != supervisor) {
        _exit(1);
    }
    Say(bell, std::to_string(getpid()));
    close(bell);
    std::optional<FaultyPhone> phone;
    phones.read([&phone](std::span<const std::uint8_t> bytes) { phone = ReadPhone(bytes); });
    if (!phone) {
        _exit(1);
    }
    BePhone(std::move(phone->first), std::move(phone->second), files, {}, plugin, log);
}

/// All that the server does. Nothing leaves it but the end of the process: what stands behind the fork is the
/// program's.
[[noreturn]] void Serve(int bell, pid_t supervisor, const std::filesystem::path& library,
                        const SharedLog& phones, const virtualphone::DeviceFiles& files,
                        SharedLog& log) noexcept {
    std::optional<Plugin> plugin = Load(bell, library, files);
    while (plugin && !Hear(bell).empty()) {
        // The server's sibling: a child of the supervisor, who can wait for it.
        const auto phone = static_cast<pid_t>(syscall(SYS_clone, CLONE_PARENT | SIGCHLD, 0, 0, 0, 0));
        if (phone == 0) {
            BecomePhone(bell, supervisor, plugin, phones, files, log);
        }
        if (phone < 0) {
            Say(bell, "none");
        }
    }
    _exit(0);
}

}  // namespace

std::unique_ptr<PluginServer> PluginServer::Start(const std::filesystem::path& library,
                                                  std::chrono::milliseconds timeout,
                                                  const virtualphone::DeviceFiles& files, SharedLog& log) {
    // Made here: the path may depend on this program's working folder.
    const std::filesystem::path absolute = std::filesystem::absolute(library);
    auto phones = std::make_unique<SharedLog>(kLargestPhone);
    std::array<int, 2> sockets;
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets.data()) != 0) {
        throw Failure("cannot make a socket");
    }
    File bell(sockets[0], "");
    std::optional<File> serversBell(std::in_place, sockets[1], "");
    const pid_t supervisor = getpid();
    Child server(Fork());
    if (server.id() == 0) {
        // What this program has open, and what ends when nobody has it open, is not the server's.
        const auto own = static_cast<unsigned>(serversBell->get());
        close_range(STDERR_FILENO + 1, own - 1, 0);
        close_range(own + 1, ~0U, 0);
        Serve(serversBell->get(), supervisor, absolute, *phones, files, log);
    }
    serversBell.reset();
    if (!WaitFor(bell.get(), timeout)) {
        return nullptr;
    }
    const std::string answer = Hear(bell.get());
    if (!answer.empty() && static_cast<Loaded>(answer[0]) == Loaded::NoPlugin) {
        throw PluginError(answer.substr(1));
    }
    if (answer.empty() || static_cast<Loaded>(answer[0]) != Loaded::Well) {
        return nullptr;
    }
    return std::make_unique<PluginServer>(std::move(phones), std::move(bell), std::move(server), timeout);
}

std::optional<Child> PluginServer::boot(const virtualphone::PhoneDescription& phone,
                                        const virtualphone::FailingCalls& failing) {
    mBytes.clear();
    AppendPhone(mBytes, phone, failing);
    mPhones->clear();
    if (mServer.id() < 0 || !mPhones->append(mBytes, 0) || !Say(mBell.get(), "boot")) {
        return std::nullopt;
    }
    if (!WaitFor(mBell.get(), mTimeout)) {
        // What a server that was stopped has begun still answers, at once; else nobody is left who could. A
        // process that loading the plug-in has left may still hold the bell, and keep silent.
        mServer.end();
        constexpr timeval kMoment{.tv_sec = 1, .tv_usec = 0};
        setsockopt(mBell.get(), SOL_SOCKET, SO_RCVTIMEO, &kMoment, sizeof kMoment);
    }
    const std::string answer = Hear(mBell.get());
    pid_t id = -1;
    std::from_chars(answer.data(), answer.data() + answer.size(), id);
    return id > 0 ? std::optional<Child>(id) : std::nullopt;
}

}  // namespace supervisor
