#pragma once

#include <optional>
#include <string>

#include "record/BootRecord.h"
#include "virtualphone/Api.h"
#include "virtualphone/CallFaults.h"

namespace virtualphone {

/// From here on, the calls of this process that open, read and write files under a folder are counted, and
/// those that are to fail end with EIO.
///
/// They are caught where every C and C++ library ends, at the system call: the kernel is told to hand them to
/// a signal handler of this process, which makes them in its place or does not. That cannot be undone, so it
/// is for a process of its own. SIGSYS is the handler's.
/// @param root an absolute path without a slash at its end.
/// @throws std::system_error where the kernel or the processor has no way to do so.
VIRTUALPHONE_API void WatchFileCalls(const std::string& root, const FailingCalls& failing);

/// What has been counted since; none without `WatchFileCalls`.
VIRTUALPHONE_API std::optional<record::FileCalls> CountedFileCalls();

}  // namespace virtualphone
