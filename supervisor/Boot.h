#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>

#include "record/BootRecord.h"
#include "virtualphone/CallFaults.h"
#include "virtualphone/PhoneDescription.h"

namespace supervisor {

/// How a phone is booted.
struct BootOptions {
    std::filesystem::path library = {};  ///< the build of the plug-in
    std::filesystem::path root = {};     ///< keeps the phone's files; empty: a temporary folder does
    bool cleanRoot = false;              ///< removes first what lies under the root
    std::chrono::milliseconds timeout = std::chrono::seconds(60);
    /// Calls of the plug-in that fail in this boot, beside what the description says. With a kind of the
    /// files' calls among the keys, be it with no number, the record counts these calls; where the kernel has
    /// no seccomp(2) to catch them by, the boot ends in a PluginError that says so.
    virtualphone::FailingCalls failing = {};
    /// Whether the record carries the phone as the text of a phone file, as a report does.
    bool describe = true;
    /// Most bytes that the record of the events may have; what comes later is counted as lost. Only what is
    /// written takes memory.
    std::size_t recordLimit = std::size_t{256} << 20;
};

/// A boot in a process of its own: whatever the plug-in does there, the caller gets the record of what
/// happened up to then.
///
///     std::vector<supervisor::RunningBoot> boots;
///     for (const auto& phone : phones) { boots.emplace_back(phone, options); }
///     for (auto& boot : boots) { Use(boot.finish()); }
///
/// The child is a fork of this process, so no other thread should be at work when a boot starts. Its standard
/// output is this process's standard error, its standard input is empty. It dies with the thread that started
/// it, and processes that the plug-in leaves are ended with it.
class RunningBoot {
  public:
    /// Lays the phone's files and starts the boot.
    /// @throws virtualphone::PhoneFileError, std::system_error
    RunningBoot(virtualphone::PhoneDescription phone, const BootOptions& options);
    /// Ends the boot if it is still running.
    ~RunningBoot();
    RunningBoot(RunningBoot&&) noexcept;
    RunningBoot& operator=(RunningBoot&&) noexcept;

    /// Readable once `finish` does not have to wait: the boot has ended or its time is over.
    int pollFd() const;

    /// Waits for the end of the boot, at most until its time limit, and collects what it did. Once only.
    /// @throws PluginError for a library that is no plug-in, and for a phone that cannot have the failing
    /// calls.
    record::BootRecord finish();

  private:
    struct State;
    std::unique_ptr<State> mState;
};

/// Boots a phone: start and finish in one.
record::BootRecord Boot(virtualphone::PhoneDescription phone, const BootOptions& options);

}  // namespace supervisor
