#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "record/BootRecord.h"
#include "virtualphone/Api.h"
#include "virtualphone/CallFaults.h"

namespace virtualphone {

/// Most calls of one kind that can be made to fail: a signal handler has no other room for their numbers.
inline constexpr std::size_t kMostFailingFileCalls = 64;

/// From here on, the calls of this process that open, read and write files under a folder are counted, and
/// those that are to fail end with EIO.
///
/// They are caught where every C and C++ library ends, at the system call: the kernel is told to hand them to
/// a signal handler of this process, which makes them in its place or does not. That cannot be undone, so it
/// is for a process of its own. SIGSYS is the handler's: a program that the process executes has no handler
/// and a thread that blocks SIGSYS does not reach it, and both are killed by their next call.
///
/// Caught are open, openat, creat, read, pread, readv, preadv, getdents, write, pwrite, writev and pwritev.
/// Not caught are openat2, preadv2, pwritev2, sendfile, copy_file_range, what is read and written through
/// mmap, and the opening of a path that is relative, to the working folder or to a descriptor.
/// @param root an absolute path without a slash at its end; paths under it count whether they begin with it
/// or with the place where it leads. The folder exists.
/// @throws std::system_error where the kernel or the processor has no way to do so; std::runtime_error
/// without /proc, which tells where an open file lies; std::invalid_argument for more than
/// kMostFailingFileCalls of a kind; std::logic_error for a process that has called it already.
VIRTUALPHONE_API void WatchFileCalls(const std::string& root, const FailingCalls& failing);

/// What has been counted since; none without `WatchFileCalls`.
VIRTUALPHONE_API std::optional<record::FileCalls> CountedFileCalls();

}  // namespace virtualphone
