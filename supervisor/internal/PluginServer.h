#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "supervisor/internal/Process.h"
#include "supervisor/internal/SharedLog.h"
#include "virtualphone/CallFaults.h"
#include "virtualphone/DeviceFiles.h"
#include "virtualphone/PhoneDescription.h"

namespace supervisor {

/// A process that has loaded the plug-in and forks phones.
class PluginServer {
  public:
    /// Of the parts that `Start` makes.
    PluginServer(std::unique_ptr<SharedLog> phones, File bell, Child server,
                 std::chrono::milliseconds timeout)
        : mPhones(std::move(phones)), mBell(std::move(bell)), mServer(std::move(server)), mTimeout(timeout) {}

    /// Starts it.
    /// @param timeout longest time that it may take to answer.
    /// @param files where the phones' files will lie; only its root counts.
    /// @param log takes what the phones do.
    /// @return none where the plug-in cannot be loaded without a trace.
    /// @throws PluginError for a library that is no plug-in; std::system_error
    static std::unique_ptr<PluginServer> Start(const std::filesystem::path& library,
                                               std::chrono::milliseconds timeout,
                                               const virtualphone::DeviceFiles& files, SharedLog& log);

    /// Starts a phone whose files are laid. It is a child of this process, not of the server.
    /// @return none where the server is gone or does not answer, or the phone is too large for it.
    std::optional<Child> boot(const virtualphone::PhoneDescription& phone,
                              const virtualphone::FailingCalls& failing);

  private:
    std::unique_ptr<SharedLog> mPhones;  ///< holds the phone to boot
    File mBell;                          ///< rung for each phone; answers with its process
    Child mServer;
    std::chrono::milliseconds mTimeout;
    std::vector<std::uint8_t> mBytes;
};

}  // namespace supervisor
