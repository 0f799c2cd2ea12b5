#include "zvcam/commands/Limits.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include "zvcam/commands/ExitStatus.h"

namespace zvcam {

namespace {

/// Bytes that are kept back, and that there are at least when the program begins: more than the C++ library
/// sets apart for exceptions when it is loaded, and the constructors of static objects need.
constexpr std::size_t kReserve = std::size_t{2} << 20;

// What the handlers below need, which are plain functions.
void* gReserve = MAP_FAILED;
pid_t gProgram = 0;
std::terminate_handler gFormerHandler = nullptr;

void* Reserve() {
    return mmap(nullptr, kReserve, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
}

[[noreturn]] void EndInALine() {
    constexpr std::string_view kLine = "zvcam: there is not enough memory\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kLine.data(), kLine.size());
    _exit(kExitUnusable);
}

/// Ends the program where there is no memory for an exception, which could not say so: std::terminate() would
/// be called. Before the constructors of static objects, which are the first to throw one.
__attribute__((constructor(101))) void EndWithoutMemory() {
    void* const memory = Reserve();
    if (memory == MAP_FAILED) {
        EndInALine();
    }
    munmap(memory, kReserve);
}

/// Called by operator new. There are destructors that allocate: those of JSON values.
[[noreturn]] void GiveMemoryBack() {
    if (gReserve != MAP_FAILED) {
        munmap(gReserve, kReserve);
        gReserve = MAP_FAILED;
    }
    throw std::bad_alloc();
}

/// Where that was not enough, or no exception can pass. A boot's own process is none of the program's: its
/// record says how the plug-in ended.
[[noreturn]] void Terminate() {
    const std::exception_ptr exception = std::current_exception();
    if (getpid() == gProgram && exception != nullptr) {
        try {
            std::rethrow_exception(exception);
        } catch (const std::bad_alloc&) {
            EndInALine();
        } catch (...) {
            gFormerHandler();
        }
    }
    gFormerHandler();
    std::abort();
}

}  // namespace

void KeepMemoryBack() {
    gReserve = Reserve();
    gProgram = getpid();
    std::set_new_handler(GiveMemoryBack);
    gFormerHandler = std::set_terminate(Terminate);
}

void ExpectOpenFiles(std::size_t count) {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= count) {
        return;
    }
    limit.rlim_cur = std::min<rlim_t>(count, limit.rlim_max);
    if (limit.rlim_cur < count || setrlimit(RLIMIT_NOFILE, &limit) != 0) {
        throw std::runtime_error("at most " + std::to_string(limit.rlim_cur) +
                                 " files may be open at a time (`ulimit -n`), expected " +
                                 std::to_string(count) + " or more");
    }
}

}  // namespace zvcam
