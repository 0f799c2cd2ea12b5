// Measured PROGRAM ARGUMENT...: runs a program with its output thrown away, and prints the processor
// milliseconds of it and of all that it started, the peak of its memory in MiB, and its exit status.
//
// A process's peak counts the memory of the one that it was started from, up to the moment when it became the
// program: that has to be a small one.

#include <fcntl.h>
#include <iostream>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double Milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "Measured PROGRAM ARGUMENT...\n";
        return 2;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    int status = 0;
    rusage usage{};
    if (posix_spawn(&child, argv[1], &actions, nullptr, argv + 1, environ) != 0 ||
        wait4(child, &status, 0, &usage) != child || !WIFEXITED(status)) {
        std::cerr << "Measured: " << argv[1] << " cannot be run, or did not end by itself\n";
        return 1;
    }
    std::cout << Milliseconds(usage.ru_utime) + Milliseconds(usage.ru_stime) << ' '
              << static_cast<double>(usage.ru_maxrss) / 1024 << ' ' << WEXITSTATUS(status) << '\n';
}
