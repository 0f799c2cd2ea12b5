#include "virtualphone/internal/FileCalls.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <system_error>
#include <type_traits>
#include <ucontext.h>
#include <unistd.h>
#include <vector>

namespace virtualphone {

namespace {

/// A system call as the kernel hands it to a signal handler.
struct SystemCall {
#if defined(__x86_64__)
    static constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
    explicit SystemCall(ucontext_t& context)
        : result(context.uc_mcontext.gregs[REG_RAX]), arguments{context.uc_mcontext.gregs[REG_RDI],
                                                                context.uc_mcontext.gregs[REG_RSI],
                                                                context.uc_mcontext.gregs[REG_RDX],
                                                                context.uc_mcontext.gregs[REG_R10],
                                                                context.uc_mcontext.gregs[REG_R8],
                                                                context.uc_mcontext.gregs[REG_R9]} {}
    greg_t& result;
    std::array<greg_t, 6> arguments;
#elif defined(__aarch64__)
    static constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
    explicit SystemCall(ucontext_t& context) : result(context.uc_mcontext.regs[0]) {
        std::copy_n(context.uc_mcontext.regs, arguments.size(), arguments.begin());
    }
    unsigned long long& result;
    std::array<unsigned long long, 6> arguments;
#else
#error "say where this processor keeps a system call's arguments and result"
#endif
};

/// The system calls that are caught, and what they are to a phone. (Those that take a list of buffers are the
/// C++ library's way to write.)
struct Caught {
    int number;
    Call call;
};
constexpr std::array kCaught = {
    Caught{SYS_openat, Call::FileOpened},  Caught{SYS_read, Call::FileRead},
    Caught{SYS_pread64, Call::FileRead},   Caught{SYS_readv, Call::FileRead},
    Caught{SYS_preadv, Call::FileRead},    Caught{SYS_getdents64, Call::FileRead},
    Caught{SYS_write, Call::FileWritten},  Caught{SYS_pwrite64, Call::FileWritten},
    Caught{SYS_writev, Call::FileWritten}, Caught{SYS_pwritev, Call::FileWritten},
#if defined(SYS_open)
    Caught{SYS_open, Call::FileOpened},
#endif
#if defined(SYS_creat)
    Caught{SYS_creat, Call::FileOpened},
#endif
};

/// The path of a folder or file.
struct Path {
    std::array<char, PATH_MAX> text;
    std::size_t size = 0;

    std::string_view view() const { return {text.data(), size}; }
    bool holds(std::string_view path) const {
        return path.starts_with(view()) && path.size() > size && path[size] == '/';
    }
};

/// The calls of one kind.
struct Kind {
    std::atomic<std::uint64_t> count = 0;
    std::array<std::uint64_t, kMostFailingFileCalls> failing;  ///< ascending
    std::size_t failingCount = 0;
};

/// What the handler needs. A handler is a plain function, and this one still runs when all that has a
/// destructor is gone.
struct Watch {
    bool on = false;
    Path root;                  ///< as the phone's paths begin
    Path realRoot;              ///< where that leads: the paths of open files begin so
    std::uint64_t pass = 0;     ///< the mark that the handler's own calls carry
    std::array<Kind, 3> kinds;  ///< opened, read, written

    Kind& of(Call call) {
        return kinds[static_cast<std::size_t>(call) - static_cast<std::size_t>(Call::FileOpened)];
    }
};
static_assert(std::is_trivially_destructible_v<Watch>);
Watch gFileWatch;

/// The path of an open file; empty where the system does not tell.
Path PathOf(int file) {
    constexpr std::string_view kFolder = "/proc/self/fd/";
    std::array<char, 32> link{};
    std::to_chars(std::copy(kFolder.begin(), kFolder.end(), link.data()), link.data() + link.size() - 1,
                  file);
    Path path;
    path.size = static_cast<std::size_t>(
        std::max<ssize_t>(readlink(link.data(), path.text.data(), path.text.size()), 0));
    return path;
}

/// Whether a call concerns what lies under the root.
bool IsOfThePhone(const Caught& caught, const SystemCall& call) {
    if (caught.call != Call::FileOpened) {
        // Of a file's number 32 bits count.
        return gFileWatch.realRoot.holds(PathOf(static_cast<int>(call.arguments[0])).view());
    }
    const auto* const path =
        reinterpret_cast<const char*>(call.arguments[caught.number == SYS_openat ? 1 : 0]);
    return path != nullptr && (gFileWatch.root.holds(path) || gFileWatch.realRoot.holds(path));
}

/// Counts a call.
/// @return whether it is one that fails.
bool IsToFail(int number, const SystemCall& call) {
    const auto caught = std::find_if(kCaught.begin(), kCaught.end(),
                                     [number](const Caught& each) { return each.number == number; });
    if (caught == kCaught.end() || !IsOfThePhone(*caught, call)) {
        return false;
    }
    Kind& kind = gFileWatch.of(caught->call);
    const auto* const first = kind.failing.data();
    return std::binary_search(first, first + kind.failingCount, kind.count++);
}

/// Makes a call, which the filter lets pass by its mark: none that is caught has a sixth argument.
/// @return what the kernel answers: the result, or an error as a negative number.
long Make(int number, const SystemCall& call) {
    const auto& [a, b, c, d, e, unused] = call.arguments;
    const long result = syscall(number, a, b, c, d, e, gFileWatch.pass);
    return result < 0 ? -errno : result;
}

/// Runs in place of the call that it is about, and at no other moment: it may use what a function there may.
void Handle(int, siginfo_t* info, void* context) {
    const int formerError = errno;
    SystemCall call(*static_cast<ucontext_t*>(context));
    const long answer = IsToFail(info->si_syscall, call) ? -EIO : Make(info->si_syscall, call);
    call.result = static_cast<std::remove_reference_t<decltype(call.result)>>(answer);
    errno = formerError;
}

/// Hands what is caught to the handler, unless the handler makes it.
std::vector<sock_filter> Filter() {
    const auto load = [](std::size_t offset) -> sock_filter {
        return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset));
    };
    const auto end = [](std::uint32_t action) -> sock_filter { return BPF_STMT(BPF_RET | BPF_K, action); };
    const auto ifEqual = [](std::uint64_t value, std::size_t skippedIf,
                            std::size_t skippedElse) -> sock_filter {
        return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(value),
                        static_cast<std::uint8_t>(skippedIf), static_cast<std::uint8_t>(skippedElse));
    };
    constexpr std::size_t kMark = offsetof(seccomp_data, args) + 5 * sizeof(std::uint64_t);
    std::vector<sock_filter> filter = {load(offsetof(seccomp_data, arch)),
                                       ifEqual(SystemCall::kArchitecture, 1, 0), end(SECCOMP_RET_ALLOW),
                                       load(offsetof(seccomp_data, nr))};
    for (std::size_t i = 0; i < kCaught.size(); ++i) {
        filter.push_back(ifEqual(static_cast<std::uint32_t>(kCaught[i].number), kCaught.size() - i, 0));
    }
    for (const sock_filter& statement :
         {end(SECCOMP_RET_ALLOW), load(kMark), ifEqual(gFileWatch.pass & 0xFFFFFFFFU, 0, 3),
          load(kMark + sizeof(std::uint32_t)), ifEqual(gFileWatch.pass >> 32, 0, 1), end(SECCOMP_RET_ALLOW),
          end(SECCOMP_RET_TRAP)}) {
        filter.push_back(statement);
    }
    return filter;
}

[[noreturn]] void Fail(int error) {
    throw std::system_error(error, std::generic_category(), "cannot watch the calls of files");
}

/// Where a folder really lies.
Path RealPath(const std::string& folder) {
    const int file = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) {
        Fail(errno);
    }
    const Path path = PathOf(file);
    close(file);
    if (path.size == 0) {
        throw std::runtime_error("cannot watch the calls of files: /proc does not tell where files lie");
    }
    return path;
}

}  // namespace

void WatchFileCalls(const std::string& root, const FailingCalls& failing) {
    if (gFileWatch.on) {
        throw std::logic_error("the calls of files of this process are watched already");
    }
    if (root.size() >= gFileWatch.root.text.size()) {
        Fail(ENAMETOOLONG);
    }
    gFileWatch.root.size = root.copy(gFileWatch.root.text.data(), root.size());
    gFileWatch.realRoot = RealPath(root);
    for (const Call call : {Call::FileOpened, Call::FileRead, Call::FileWritten}) {
        const auto found = failing.find(call);
        const std::set<std::uint64_t> numbers =
            found == failing.end() ? std::set<std::uint64_t>() : found->second;
        Kind& kind = gFileWatch.of(call);
        if (numbers.size() > kind.failing.size()) {
            throw std::invalid_argument("cannot let more than " + std::to_string(kind.failing.size()) +
                                        " calls of files of one kind fail");
        }
        std::copy(numbers.begin(), numbers.end(), kind.failing.begin());
        kind.failingCount = numbers.size();
    }
    if (getrandom(&gFileWatch.pass, sizeof gFileWatch.pass, 0) != sizeof gFileWatch.pass) {
        Fail(errno);
    }
    struct sigaction action {};
    action.sa_sigaction = Handle;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    std::vector<sock_filter> filter = Filter();
    const sock_fprog program{.len = static_cast<unsigned short>(filter.size()), .filter = filter.data()};
    if (sigaction(SIGSYS, &action, nullptr) != 0 || prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &program) != 0) {
        Fail(errno);
    }
    gFileWatch.on = true;
}

std::optional<record::FileCalls> CountedFileCalls() {
    if (!gFileWatch.on) {
        return std::nullopt;
    }
    return record::FileCalls{.opened = gFileWatch.of(Call::FileOpened).count,
                             .read = gFileWatch.of(Call::FileRead).count,
                             .written = gFileWatch.of(Call::FileWritten).count};
}

}  // namespace virtualphone
