#pragma once

#include <cstdint>
#include <linux/seccomp.h>
#include <sys/syscall.h>
#include <unistd.h>

/// Whether the kernel can hand a process's system calls to it, by which those of files are counted and fail.
/// An emulator of another processor may not have that.
inline bool CallsOfFilesCanBeCaught() {
    const std::uint32_t action = SECCOMP_RET_TRAP;
    return syscall(SYS_seccomp, SECCOMP_GET_ACTION_AVAIL, 0, &action) == 0;
}
