#include "virtualphone/internal/FileCalls.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
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
    Caught{SYS_openat, Call::FileOpened},    Caught{SYS_read, Call::FileRead},
    Caught{SYS_pread64, Call::FileRead},     Caught{SYS_readv, Call::FileRead},
    Caught{SYS_getdents64, Call::FileRead},  Caught{SYS_write, Call::FileWritten},
    Caught{SYS_pwrite64, Call::FileWritten}, Caught{SYS_writev, Call::FileWritten},
#if defined(SYS_open)
    Caught{SYS_open, Call::FileOpened},
#endif
};

/// The calls of one kind.
struct Kind {
    std::atomic<std::uint64_t> count = 0;
    std::vector<std::uint64_t> failing;
};

// A signal handler is a plain function, so it finds what it needs here.
std::array<char, PATH_MAX> gRoot;
std::size_t gRootSize = 0;
std::array<Kind, 3> gKinds;  ///< opened, read, written
bool gWatches = false;
std::uint64_t gPass = 0;  ///< what the handler's own calls carry

Kind& KindOf(Call call) {
    return gKinds[static_cast<std::size_t>(call) - static_cast<std::size_t>(Call::FileOpened)];
}

bool IsBelowRoot(std::string_view path) {
    return path.starts_with(std::string_view(gRoot.data(), gRootSize)) && path.size() > gRootSize &&
           path[gRootSize] == '/';
}

/// Makes a system call that the filter lets pass. None that is caught has a sixth argument.
template <typename... Arguments>
long Pass(long number, Arguments... arguments) {
    return syscall(number, arguments..., gPass);
}

/// Whether an open file lies under the root.
bool IsOfThePhone(long file) {
    std::array<char, 32> link;
    std::array<char, PATH_MAX> path;
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%ld", file);
    const ssize_t size = readlink(link.data(), path.data(), path.size());
    return size > 0 && IsBelowRoot({path.data(), static_cast<std::size_t>(size)});
}

void Handle(int, siginfo_t* info, void* context) {
    const int formerError = errno;
    SystemCall call(*static_cast<ucontext_t*>(context));
    const auto& [a, b, c, d, e, unused] = call.arguments;
    const auto caught = std::find_if(kCaught.begin(), kCaught.end(),
                                     [=](const Caught& each) { return each.number == info->si_syscall; });
    bool fails = false;
    if (caught != kCaught.end()) {
        const auto path = info->si_syscall == SYS_openat ? b : a;
        if (caught->call == Call::FileOpened ? IsBelowRoot(reinterpret_cast<const char*>(path))
                                             : IsOfThePhone(static_cast<long>(a))) {
            Kind& kind = KindOf(caught->call);
            fails = std::binary_search(kind.failing.begin(), kind.failing.end(), kind.count++);
        }
    }
    const long result = fails ? -1 : Pass(info->si_syscall, a, b, c, d, e);
    call.result = static_cast<std::remove_reference_t<decltype(call.result)>>(fails        ? -EIO
                                                                              : result < 0 ? -errno
                                                                                           : result);
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
         {end(SECCOMP_RET_ALLOW), load(kMark), ifEqual(gPass & 0xFFFFFFFFU, 0, 3),
          load(kMark + sizeof(std::uint32_t)), ifEqual(gPass >> 32, 0, 1), end(SECCOMP_RET_ALLOW),
          end(SECCOMP_RET_TRAP)}) {
        filter.push_back(statement);
    }
    return filter;
}

[[noreturn]] void Fail() {
    throw std::system_error(errno, std::generic_category(), "cannot watch the calls of files");
}

}  // namespace

void WatchFileCalls(const std::string& root, const FailingCalls& failing) {
    if (root.size() >= gRoot.size()) {
        errno = ENAMETOOLONG;
        Fail();
    }
    std::copy(root.begin(), root.end(), gRoot.begin());
    gRootSize = root.size();
    for (const Call call : {Call::FileOpened, Call::FileRead, Call::FileWritten}) {
        if (const auto found = failing.find(call); found != failing.end()) {
            KindOf(call).failing.assign(found->second.begin(), found->second.end());
        }
    }
    if (getrandom(&gPass, sizeof gPass, 0) != sizeof gPass) {
        Fail();
    }
    struct sigaction action {};
    action.sa_sigaction = Handle;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    std::vector<sock_filter> filter = Filter();
    const sock_fprog program{.len = static_cast<unsigned short>(filter.size()), .filter = filter.data()};
    if (sigaction(SIGSYS, &action, nullptr) != 0 || prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &program) != 0) {
        Fail();
    }
    gWatches = true;
}

std::optional<record::FileCalls> CountedFileCalls() {
    if (!gWatches) {
        return std::nullopt;
    }
    return record::FileCalls{.opened = KindOf(Call::FileOpened).count,
                             .read = KindOf(Call::FileRead).count,
                             .written = KindOf(Call::FileWritten).count};
}

}  // namespace virtualphone
