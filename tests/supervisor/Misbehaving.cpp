#include <array>
#include <cerrno>
#include <cinttypes>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <thread>
#include <unistd.h>

#include <android/log.h>

#include "platform/DevicePath.h"
#include "platform/Properties.h"

/// A plug-in that logs, and then does what property "test.deed" says.
class __attribute__((visibility("default"))) CameraPlatformInfoZelvan {
  public:
    static CameraPlatformInfoZelvan* CreateInstance();
    void ExposureModuleInfo();
};

namespace {

/// Fills the beginning of all memory that this process shares with others.
void Scribble() {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t first = 0;
        std::uintptr_t last = 0;
        std::array<char, 5> rights{};
        if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " %4s", &first, &last, rights.data()) == 3 &&
            rights[1] == 'w' && rights[3] == 's') {
            std::memset(reinterpret_cast<void*>(first), 0xFF, 4096);
        }
    }
}

/// Sends a signal to the other children of this process's parent.
void SignalSiblings(int signal) {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const pid_t process = std::atoi(entry.path().filename().c_str());
        std::ifstream file(entry.path() / "stat");
        std::string stat;
        std::getline(file, stat);
        // Behind the name in brackets stand state and parent.
        const std::size_t name = stat.rfind(')');
        if (process > 0 && process != getpid() && name != std::string::npos &&
            std::atoi(stat.c_str() + name + 3) == getppid()) {
            kill(process, signal);
        }
    }
}

/// Opens without a path, and writes and reads a file by calls that no library makes of itself. The first
/// reading and the second writing are to fail.
void UseRareCalls() {
    const bool refused = syscall(SYS_openat, AT_FDCWD, nullptr, O_RDONLY) == -1 && errno == EFAULT;
    const int file = open(DevicePath("/data/vendor/camera/made").c_str(), O_RDWR | O_CREAT, 0600);
    char byte = 'b';
    const iovec bytes{.iov_base = &byte, .iov_len = 1};
    const bool written = pwritev(file, &bytes, 1, 0) == 1 && pwritev(file, &bytes, 1, 1) == -1;
    const bool read = preadv(file, &bytes, 1, 0) == -1 && errno == EIO && preadv(file, &bytes, 1, 0) == 1;
    if (!refused || !written || !read || close(file) != 0) {
        std::abort();
    }
}

void Log(const char* text) {
    __android_log_print(ANDROID_LOG_INFO, "CameraPlatformInfoZelvan", "(1)[Deed] %s", text);
}

const std::map<std::string, void (*)()> kDeeds = {
    {"crash", [] { raise(SIGSEGV); }},
    {"abort", [] { std::abort(); }},
    {"real-time signal", [] { raise(SIGRTMIN); }},
    {"exit", [] { std::exit(0); }},
    {"hang",
     [] {
         for (;;) {
             pause();
         }
     }},
    {"throw", [] { throw std::out_of_range("off the end"); }},
    {"throw int", [] { throw 7; }},
    {"print", [] { std::puts("printed"); }},
    {"leak", [] { [[maybe_unused]] const void* const lost = std::malloc(100); }},
    {"fork",
     [] {
         if (fork() == 0) {
             Log("from a fork");
             sleep(1000);
         }
     }},
    {"leave a process",
     [] {
         if (fork() == 0) {
             setpgid(0, 0);
             // The descriptors that it keeps are those that nobody gave it.
             close_range(STDIN_FILENO, STDERR_FILENO, 0);
             sleep(30);
             _exit(0);
         }
     }},
    {"flood",
     [] {
         for (int i = 0; i < 10000; ++i) {
             Log("flood");
         }
     }},
    {"scribble", Scribble},
    {"stop siblings", [] { SignalSiblings(SIGSTOP); }},
    {"kill siblings", [] { SignalSiblings(SIGKILL); }},
    {"log", [] { Log("when loaded"); }},
    {"thread",
     [] {
         // The thread's code stays where it is when the library is unloaded.
         Dl_info library;
         if (dladdr(reinterpret_cast<const void*>(&Log), &library) != 0) {
             dlopen(library.dli_fname, RTLD_NOW | RTLD_NODELETE);
         }
         std::thread([] { pause(); }).detach();
     }},
    {"litter",
     [] {
         const std::string root = DevicePath("");
         std::filesystem::create_directory_symlink("/", root + "/link");
         std::filesystem::create_directories(root + "/laid by none/folder");
         std::filesystem::remove(root + "/laid");
         std::filesystem::create_directory(root + "/laid");
     }},
    {"make a file", [] { std::ofstream(DevicePath("/data/vendor/camera/made")) << "made"; }},
    {"use rare calls", UseRareCalls},
    {"fill a file",
     [] {
         const std::string path = DevicePath("/data/vendor/camera/large");
         if (truncate((std::fclose(std::fopen(path.c_str(), "w")), path.c_str()), (64L << 20) + 1) != 0) {
             std::abort();
         }
     }},
};

void Do(const char* deed) {
    if (const auto found = kDeeds.find(deed); found != kDeeds.end()) {
        found->second();
    }
}

}  // namespace

CameraPlatformInfoZelvan* CameraPlatformInfoZelvan::CreateInstance() {
    static CameraPlatformInfoZelvan instance;
    return &instance;
}

void CameraPlatformInfoZelvan::ExposureModuleInfo() {
    Log("before");
    std::array<char, PROPERTY_VALUE_MAX> deed;
    property_get("test.deed", deed.data(), "");
    Do(deed.data());
}

/// Does as soon as it is loaded what the environment says.
[[maybe_unused]] static const bool kDidWhenLoaded = [] {
    const char* const deed = std::getenv("TEST_DEED_WHEN_LOADED");
    Do(deed == nullptr ? "" : deed);
    return true;
}();
