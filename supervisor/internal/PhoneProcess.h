#pragma once

#include <chrono>
#include <filesystem>
#include <optional>

#include "record/BootRecord.h"
#include "supervisor/Plugin.h"
#include "virtualphone/CallFaults.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/PhoneDescription.h"

namespace supervisor {

class SharedLog;

/// All that the process does which is a phone: it switches the phone on, loads the plug-in unless it is
/// loaded already, runs it, unloads it and leaves. What happens goes to `log`. Nothing leaves it but the end
/// of the process: what stands behind the fork is the program's.
[[noreturn]] void BePhone(virtualphone::PhoneDescription description, virtualphone::FailingCalls failing,
                          const virtualphone::DeviceFiles& files, const std::filesystem::path& library,
                          std::optional<Plugin>& plugin, SharedLog& log) noexcept;

/// What such a process has left in its log, and how it ended; nothing of the phone's name and files.
/// @param status its wait status.
/// @param limitOver the time limit where it was ended for that.
/// @throws PluginError for a library that is no plug-in.
record::BootRecord ReadPhoneLog(const SharedLog& log, int status,
                                std::optional<std::chrono::milliseconds> limitOver);

}  // namespace supervisor
