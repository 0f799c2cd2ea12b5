#include "supervisor/internal/Process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "supervisor/EndOnSignal.h"

namespace supervisor {

namespace {

/// Makes the fork a process of its own: what this program has set up for itself must not act twice.
void LeaveTheProgram(pid_t program) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != program) {
        _exit(1);
    }
    for (int signal = 1; signal <= SIGRTMAX; ++signal) {
        std::signal(signal, SIG_DFL);
    }
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    if (fcntl(STDERR_FILENO, F_GETFD) < 0) {
        dup2(nothing, STDERR_FILENO);
    }
    dup2(STDERR_FILENO, STDOUT_FILENO);
    if (nothing > STDERR_FILENO) {
        close(nothing);
    }
}

}  // namespace

std::system_error Failure(const char* action) {
    return {errno, std::generic_category(), action};
}

File::File(int file, const char* action) : mFile(file) {
    if (file < 0) {
        throw Failure(action);
    }
}

File::~File() {
    if (mFile >= 0) {
        close(mFile);
    }
}

pid_t Fork() {
    // What this program has still to write is its own to write.
    std::cout.flush();
    std::fflush(stdout);
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former);
    const pid_t program = getpid();
    const pid_t child = fork();
    if (child == 0) {
        LeaveTheProgram(program);
        sigset_t none;
        sigemptyset(&none);
        pthread_sigmask(SIG_SETMASK, &none, nullptr);
        return 0;
    }
    const int error = errno;
    pthread_sigmask(SIG_SETMASK, &former, nullptr);
    errno = error;
    if (child < 0) {
        throw Failure("cannot start a process");
    }
    return child;
}

bool WaitFor(int file, std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    std::array<pollfd, 2> polls{{{.fd = file, .events = POLLIN, .revents = 0},
                                 {.fd = EndingWaits::pollFd(), .events = POLLIN, .revents = 0}}};
    int ready = 0;
    do {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        ready = poll(polls.data(), polls.size(),
                     static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1 << 30)));
    } while (ready < 0 || (ready == 0 && std::chrono::steady_clock::now() < end));
    return polls[0].revents != 0;
}

int Child::end() {
    if (mId > 0) {
        kill(mId, SIGKILL);
    }
    return wait();
}

void Child::askToEnd() const {
    if (mId > 0) {
        kill(mId, SIGTERM);
        // A stopped process would take no notice.
        kill(mId, SIGCONT);
    }
}

int Child::wait() {
    int status = 0;
    if (mId > 0) {
        // Until it has been waited for, its number is that of its group, with all that it left.
        siginfo_t info;
        while (waitid(P_PID, static_cast<id_t>(mId), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
        }
        kill(-mId, SIGKILL);
        while (waitpid(mId, &status, 0) < 0 && errno == EINTR) {
        }
        mId = -1;
    }
    return status;
}

}  // namespace supervisor
